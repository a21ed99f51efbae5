#include "tools/render/WavReader.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <fstream>
#include <system_error>

#include "tools/render/Failure.h"

namespace
{

/// Blocks may be tiny, and each read of the library is one of the system.
constexpr std::int64_t PendingFrames = 4096;

/// Little endian.
std::uint32_t ReadNumber(std::istream& stream)
{
    std::array<char, 4> bytes{};
    stream.read(bytes.data(), bytes.size());
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        number |= std::uint32_t{static_cast<unsigned char>(bytes[i])} << 8 * i;
    return number;
}

std::string ReadId(std::istream& stream)
{
    std::string id(4, ' ');
    stream.read(id.data(), 4);
    return id;
}

/// libsndfile plays what is left of a truncated file; that would go unnoticed.
void CheckLength(const std::filesystem::path& path)
{
    if (std::filesystem::is_directory(path))
        throw Failure("it is a folder");
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        throw Failure(SystemReason(errno));
    const bool isRiff = ReadId(stream) == "RIFF";
    ReadNumber(stream);
    if (!isRiff || ReadId(stream) != "WAVE" || !stream)
        throw Failure("it is not a WAV file");

    std::error_code error;
    const std::uint64_t fileLength = std::filesystem::file_size(path, error);
    if (error)
        throw Failure("it is not a plain file");
    for (;;)
    {
        const std::string id = ReadId(stream);
        const std::uint64_t length = ReadNumber(stream);
        if (!stream)
            throw Failure("it is cut off: it has no sound");
        const auto start = static_cast<std::uint64_t>(stream.tellg());
        // Programs that write into a pipe cannot know the length.
        constexpr std::uint64_t Unknown = 0xFFFFFFFF;
        const bool isData = id == "data";
        if (isData && length == Unknown)
            return;
        if (start + length > fileLength)
            throw Failure("it is cut off: " + std::to_string(start + length - fileLength) +
                          " bytes are missing at its end");
        if (isData)
            return;
        stream.seekg(static_cast<std::streamoff>(start + length + length % 2));
    }
}

} // namespace

WavReader::WavReader(const std::filesystem::path& wavPath) : path(wavPath)
{
    try
    {
        CheckLength(path);
    }
    catch (const MException& failure)
    {
        Fail(failure.text.ToUTF8());
    }
    file.reset(sf_open(path.c_str(), SFM_READ, &info));
    if (!file)
        Fail(sf_strerror(nullptr));
    if (info.channels < 1 || info.channels > MaxChannels)
        Fail("it has " + std::to_string(info.channels) + " channels; at most 8 are possible");
    if (info.frames < 0 || info.frames > MaxFrames)
        Fail("it has more than " + std::to_string(MaxFrames) + " samples a channel");
}

void WavReader::Read(std::vector<std::vector<float>>& blocks, int frames)
{
    for (std::size_t i = 0; i < static_cast<std::size_t>(frames); ++i)
    {
        if (next == pending.size() && position < info.frames)
            Fetch();
        for (std::size_t channel = 0; channel < static_cast<std::size_t>(info.channels); ++channel)
            blocks[channel][i] = next < pending.size() ? pending[next++] : 0.0f;
    }
}

void WavReader::Fetch()
{
    const std::int64_t frames = std::min(PendingFrames, info.frames - position);
    pending.resize(static_cast<std::size_t>(frames * info.channels));
    next = 0;
    if (sf_readf_float(file.get(), pending.data(), frames) != frames)
        Fail("it ends too early");
    if (!std::ranges::all_of(pending, [](float x) { return std::isfinite(x); }))
        Fail("it has samples that are no numbers");
    position += frames;
}

void WavReader::Fail(const std::string& what) const
{
    throw Failure("cannot read " + Quoted(path), what);
}
