#include "tools/render/WavWriter.h"

#include <cerrno>
#include <string>

#include "tools/render/Failure.h"

namespace
{

/// Blocks may be tiny, and each write of the library is one of the system.
constexpr std::size_t PendingFrames = 4096;

} // namespace

WavWriter::WavWriter(const std::filesystem::path& path, int channels, int rate) : part(path)
{
    info.channels = channels;
    info.samplerate = rate;
    info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;

    errno = 0;
    file.reset(sf_open(part.GetPath().c_str(), SFM_WRITE, &info));
    if (!file)
        part.Fail(errno != 0 ? SystemReason(errno) : sf_strerror(nullptr));
    // It would hold the time of day, and equal renders would differ.
    sf_command(file.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
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
        part.Fail(errno != 0 ? SystemReason(errno) : "it cannot be finished");
    part.Commit();
}

void WavWriter::Flush()
{
    const auto samples = static_cast<sf_count_t>(pending.size());
    errno = 0;
    if (sf_write_float(file.get(), pending.data(), samples) != samples)
        part.Fail(errno != 0 ? SystemReason(errno) : sf_strerror(file.get()));
    pending.clear();
}
