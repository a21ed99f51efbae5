#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "tools/plot/LogScale.h"
#include "tools/plot/WindowedSpectrum.h"

/// What is drawn of a sound of any length, gathered while it passes: a piece from its middle, the
/// mean spectrum of its first two channels, and how the spectrum of the first one changes.
class SoundAnalysis
{
public:
    static constexpr int MaxChannels = 2;
    static constexpr double LowestHz = 20.0;
    static constexpr double ExcerptSeconds = 0.25;
    static constexpr double LeastSpectrogramSeconds = 2.0; ///< shorter sounds have none
    static constexpr int MaxPiece = 65536;                 ///< samples of one spectrum

    /// How wide and high, in pixels, the spectrum and the spectrogram are drawn.
    struct Size
    {
        int spectrumWidth;
        int spectrogramWidth;
        int spectrogramHeight;
    };

    /// For @p totalFrames frames, 1 or more, of @p channelCount channels.
    SoundAnalysis(int sampleRate, int channelCount, std::int64_t totalFrames, const Size& size);

    /// The next frames, a block for each channel; more than announced are left out.
    void Feed(std::span<const std::vector<float>> blocks, int frames);

    int GetChannelCount() const noexcept { return static_cast<int>(channels.size()); }
    int GetRate() const noexcept { return rate; }
    std::int64_t GetFrameCount() const noexcept { return total; }
    /// Of the middle of channel @p channel.
    std::span<const float> GetExcerpt(int channel) const;
    /// The first frame of the excerpts.
    std::int64_t GetExcerptStart() const noexcept { return excerptStart; }
    float GetPeak(int channel) const;
    double GetRMS(int channel) const;
    const LogScale& GetSpectrumScale() const noexcept { return spectrumScale; }
    /// The mean power, one number a pixel of the scale; a sine at full scale has 1.0.
    std::vector<double> GetSpectrum(int channel) const;
    bool HasSpectrogram() const noexcept { return spectrogram.has_value(); }
    const LogScale& GetSpectrogramScale() const noexcept { return spectrogramScale; }
    /// Power at the column @p column, from the lowest frequency on; of a sound that has one.
    std::span<const double> GetColumn(int column) const;

private:
    struct Channel
    {
        std::vector<float> excerpt;
        std::vector<float> recent; ///< samples that no piece has covered to its end
        std::vector<double> power; ///< sum of all pieces
        int pieces = 0;
        float peak = 0.0f;
        double squares = 0.0;
    };

    /// One spectrum for each column of the picture.
    struct Spectrogram
    {
        WindowedSpectrum transform;
        std::vector<float> recent; ///< before @p position
        std::vector<double> levels;
        int columns;
        int done = 0;
    };

    void FeedSpectrum(Channel& channel, std::span<const float> block);
    void AddPiece(Channel& channel, std::span<const float> piece);
    void FeedSpectrogram(std::span<const float> block);
    /// Behind the last frame.
    void Finish();
    void MeasureColumn(std::span<const float> piece);
    /// The frame behind the piece of column @p column; those at the ends lie within the sound.
    std::int64_t GetPieceEnd(int column) const noexcept;

    int rate; ///< Hz
    std::int64_t total;
    std::int64_t position = 0; ///< frames that came
    std::int64_t excerptStart;
    std::int64_t excerptEnd;
    LogScale spectrumScale;
    LogScale spectrogramScale;
    WindowedSpectrum transform;
    std::vector<Channel> channels;
    std::optional<Spectrogram> spectrogram;
};
