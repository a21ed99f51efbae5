#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <sndfile.h>

/// Reads a WAV file from its start to its end.
class WavReader
{
public:
    static constexpr int MaxChannels = 8;
    static constexpr std::int64_t MaxFrames = 0x7FFFFFFF;

    /// @throws MException naming @p path, if it cannot be read, is no WAV file, is shorter than it
    /// says or beyond the limits.
    explicit WavReader(const std::filesystem::path& path);

    int GetChannels() const noexcept { return info.channels; }
    int GetRate() const noexcept { return info.samplerate; } ///< Hz
    std::int64_t GetFrames() const noexcept { return info.frames; }

    /// Fills the first @p frames samples of each block, of which there is one per channel, with
    /// what comes next; behind the end of the file with silence.
    /// @throws MException if the file ends before it should, or holds what is no number.
    void Read(std::vector<std::vector<float>>& blocks, int frames);

private:
    struct Closer
    {
        void operator()(SNDFILE* open) const { sf_close(open); }
    };

    void Fetch();
    [[noreturn]] void Fail(const std::string& what) const;

    std::filesystem::path path;
    SF_INFO info{};
    std::unique_ptr<SNDFILE, Closer> file;
    std::int64_t position = 0;  ///< frames taken from the file
    std::vector<float> pending; ///< of them, interleaved
    std::size_t next = 0;       ///< sample of pending
};
