#pragma once

#include <filesystem>
#include <vector>

/// A WAV file as a whole.
struct WavSound
{
    static WavSound Read(const std::filesystem::path& path);
    void Write(const std::filesystem::path& path) const;

    std::size_t GetFrames() const { return channels.empty() ? 0 : channels[0].size(); }

    int rate = 0;
    std::vector<std::vector<float>> channels;
    int format = 0; ///< as libsndfile has it; a plain WAV file of floats if 0
};
