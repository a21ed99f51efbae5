#include "tools/render/WavWriter.h"

#include <cerrno>
#include <random>
#include <string>
#include <system_error>

#include "tools/render/Failure.h"

namespace
{

/// Blocks may be tiny, and each write of the library is one of the system.
constexpr std::size_t PendingFrames = 4096;

/// Where the file really goes. Renaming would replace links, and devices, by a plain file.
std::filesystem::path FindTarget(const std::filesystem::path& path)
{
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status))
        return path;
    if (std::filesystem::is_directory(status))
        throw Failure("cannot write " + Quoted(path), "it is a folder");
    if (!std::filesystem::is_regular_file(status))
        throw Failure("cannot write " + Quoted(path), "it is not a plain file");
    return std::filesystem::canonical(path);
}

} // namespace

WavWriter::WavWriter(const std::filesystem::path& path, int channels, int rate)
    : target(FindTarget(path)),
      temporary(target)
{
    // Two programs that render to one name do not write into each other's file.
    temporary += '.';
    temporary += std::to_string(std::random_device()());
    temporary += ".part";
    info.channels = channels;
    info.samplerate = rate;
    info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;

    errno = 0;
    file.reset(sf_open(temporary.c_str(), SFM_WRITE, &info));
    if (!file)
    {
        const std::string reason = errno != 0 ? SystemReason(errno) : sf_strerror(nullptr);
        RemoveTemporary();
        Fail(reason);
    }
    // It would hold the time of day, and equal renders would differ.
    sf_command(file.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
}

WavWriter::~WavWriter()
{
    file.reset();
    if (!isCommitted)
        RemoveTemporary();
}

void WavWriter::Write(std::span<const std::vector<float>> blocks, int frames)
{
    for (std::size_t i = 0; i < static_cast<std::size_t>(frames); ++i)
    {
        for (const std::vector<float>& block : blocks)
            pending.push_back(block[i]);
        if (pending.size() >= PendingFrames * blocks.size())
            Flush();
    }
}

void WavWriter::Commit()
{
    Flush();
    errno = 0;
    if (sf_close(file.release()) != 0)
        Fail(errno != 0 ? SystemReason(errno) : "it cannot be finished");
    std::error_code error;
    std::filesystem::rename(temporary, target, error);
    if (error)
        Fail(error.message());
    isCommitted = true;
}

void WavWriter::Flush()
{
    const auto samples = static_cast<sf_count_t>(pending.size());
    errno = 0;
    if (sf_write_float(file.get(), pending.data(), samples) != samples)
        Fail(errno != 0 ? SystemReason(errno) : sf_strerror(file.get()));
    pending.clear();
}

void WavWriter::RemoveTemporary() const noexcept
{
    std::error_code error; // there is nobody to tell, and nothing else to do
    std::filesystem::remove(temporary, error);
}

void WavWriter::Fail(const std::string& reason) const
{
    throw Failure("cannot write " + Quoted(target), reason);
}
