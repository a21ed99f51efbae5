#include "tests/tools/WavSound.h"

#include <stdexcept>

#include <sndfile.h>

WavSound WavSound::Read(const std::filesystem::path& path)
{
    SF_INFO info{};
    SNDFILE* const file = sf_open(path.c_str(), SFM_READ, &info);
    if (file == nullptr)
        throw std::runtime_error(path.string() + " cannot be read");
    const auto channelCount = static_cast<std::size_t>(info.channels);
    const auto frames = static_cast<std::size_t>(info.frames);
    std::vector<float> interleaved(channelCount * frames);
    sf_readf_float(file, interleaved.data(), info.frames);
    sf_close(file);

    WavSound sound;
    sound.rate = info.samplerate;
    sound.format = info.format;
    sound.channels.assign(channelCount, std::vector<float>(frames));
    for (std::size_t i = 0; i < interleaved.size(); ++i)
        sound.channels[i % channelCount][i / channelCount] = interleaved[i];
    return sound;
}

void WavSound::Write(const std::filesystem::path& path) const
{
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = static_cast<int>(channels.size());
    info.format = format != 0 ? format : SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    SNDFILE* const file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (file == nullptr)
        throw std::runtime_error(path.string() + " cannot be written");
    std::vector<float> interleaved;
    for (std::size_t i = 0; i < GetFrames(); ++i)
        for (const std::vector<float>& channel : channels)
            interleaved.push_back(channel[i]);
    sf_writef_float(file, interleaved.data(), static_cast<sf_count_t>(GetFrames()));
    sf_close(file);
}
