#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

#include <sndfile.h>

#include "tools/render/PartFile.h"

/// Writes a WAV file of 32-bit floats. Until Commit, and after any failure, a file that was there
/// before stays as it was.
class WavWriter
{
public:
    /// What a WAV file can hold, less room for its header.
    static constexpr std::int64_t MaxBytes = 0xFFFFFFFF - 4096;

    /// @throws MException naming @p path, if it cannot be written there.
    WavWriter(const std::filesystem::path& path, int channels, int rate);

    /// Appends @p frames samples of each block, one block per channel.
    /// @throws MException if they, or earlier ones, cannot be written.
    void Write(std::span<const std::vector<float>> blocks, int frames);
    /// Finishes the file and gives it its name. @throws MException if that fails.
    void Commit();

private:
    struct Closer
    {
        void operator()(SNDFILE* open) const { sf_close(open); }
    };

    void Flush();

    PartFile part; ///< outlives the open file
    SF_INFO info{};
    std::unique_ptr<SNDFILE, Closer> file;
    std::vector<float> pending; ///< interleaved
};
