#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <sndfile.h>

/// Writes a WAV file of 32-bit floats. It grows under a temporary name in the same folder, so until
/// Commit, and after any failure, a file that was there before stays as it was.
class WavWriter
{
public:
    /// What a WAV file can hold, less room for its header.
    static constexpr std::int64_t MaxBytes = 0xFFFFFFFF - 4096;

    /// @throws MException naming @p path, if it cannot be written there.
    WavWriter(const std::filesystem::path& path, int channels, int rate);
    /// Removes what was written, unless it was committed.
    ~WavWriter();
    WavWriter(const WavWriter&) = delete;
    WavWriter& operator=(const WavWriter&) = delete;

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
    void RemoveTemporary() const noexcept;
    [[noreturn]] void Fail(const std::string& reason) const;

    std::filesystem::path target;
    std::filesystem::path temporary;
    SF_INFO info{};
    std::unique_ptr<SNDFILE, Closer> file;
    bool isCommitted = false;
    std::vector<float> pending; ///< interleaved
};
