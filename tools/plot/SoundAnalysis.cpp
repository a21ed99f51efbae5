#include "tools/plot/SoundAnalysis.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace
{

/// The longest power of two in @p frames, as a transform takes it.
int ChoosePiece(double frames, int longest)
{
    const auto whole = static_cast<unsigned>(
        std::clamp(frames, double{kernels::RealFFT::MinSize}, static_cast<double>(longest)));
    return static_cast<int>(std::bit_floor(whole));
}

/// Up to half the rate, or 20 kHz if that is more, but never a scale without extent.
double ChooseHighest(int rate)
{
    return std::max(rate / 2.0, 2.0 * SoundAnalysis::LowestHz);
}

std::int64_t ExcerptFrames(int rate)
{
    return std::max<std::int64_t>(1, std::llround(SoundAnalysis::ExcerptSeconds * rate));
}

constexpr std::size_t Overlap =
    8; ///< of pieces, so that the narrow windows weigh all samples alike
constexpr double ColumnSeconds = 0.18; ///< between seeing steps in time and in frequency

} // namespace

SoundAnalysis::SoundAnalysis(int sampleRate, int channelCount, std::int64_t totalFrames,
                             const Size& size)
    : rate(sampleRate),
      total(totalFrames),
      excerptStart(std::max<std::int64_t>(0, totalFrames / 2 - ExcerptFrames(sampleRate) / 2)),
      excerptEnd(std::min(totalFrames, excerptStart + ExcerptFrames(sampleRate))),
      spectrumScale(LowestHz, ChooseHighest(sampleRate), size.spectrumWidth),
      spectrogramScale(LowestHz, ChooseHighest(sampleRate), size.spectrogramHeight),
      transform(ChoosePiece(static_cast<double>(totalFrames), MaxPiece)),
      channels(static_cast<std::size_t>(std::clamp(channelCount, 1, MaxChannels)))
{
    for (Channel& channel : channels)
    {
        channel.excerpt.reserve(static_cast<std::size_t>(excerptEnd - excerptStart));
        channel.power.resize(static_cast<std::size_t>(transform.GetBinCount()));
    }
    if (static_cast<double>(totalFrames) < LeastSpectrogramSeconds * sampleRate)
        return;
    const int piece = ChoosePiece(ColumnSeconds * sampleRate, MaxPiece);
    spectrogram.emplace(Spectrogram{.transform = WindowedSpectrum(piece),
                                    .recent = std::vector<float>(static_cast<std::size_t>(piece)),
                                    .levels = {},
                                    .columns = size.spectrogramWidth});
    spectrogram->levels.resize(static_cast<std::size_t>(size.spectrogramWidth) *
                               static_cast<std::size_t>(size.spectrogramHeight));
}

void SoundAnalysis::Feed(std::span<const std::vector<float>> blocks, int frames)
{
    const auto count = static_cast<std::size_t>(std::min<std::int64_t>(frames, total - position));
    // Of this block, what lies in the excerpt.
    const auto from = static_cast<std::size_t>(
        std::clamp<std::int64_t>(excerptStart - position, 0, static_cast<std::int64_t>(count)));
    const auto to = static_cast<std::size_t>(
        std::clamp<std::int64_t>(excerptEnd - position, 0, static_cast<std::int64_t>(count)));
    position += static_cast<std::int64_t>(count);
    for (std::size_t i = 0; i < channels.size(); ++i)
    {
        const std::span<const float> block = std::span(blocks[i]).first(count);
        Channel& channel = channels[i];
        for (const float sample : block)
        {
            channel.peak = std::max(channel.peak, std::abs(sample));
            channel.squares += static_cast<double>(sample) * sample;
        }
        const auto excerpt = block.subspan(from, to - from);
        channel.excerpt.insert(channel.excerpt.end(), excerpt.begin(), excerpt.end());
        FeedSpectrum(channel, block);
    }
    if (spectrogram)
        FeedSpectrogram(std::span(blocks[0]).first(count));
    if (position == total && count > 0)
        Finish();
}

void SoundAnalysis::FeedSpectrum(Channel& channel, std::span<const float> block)
{
    const auto piece = static_cast<std::size_t>(transform.GetLength());
    std::vector<float>& recent = channel.recent;
    recent.insert(recent.end(), block.begin(), block.end());
    std::size_t start = 0;
    for (; recent.size() - start >= piece; start += piece / Overlap)
        AddPiece(channel, std::span(recent).subspan(start, piece));
    recent.erase(recent.begin(), recent.begin() + static_cast<std::ptrdiff_t>(start));
}

void SoundAnalysis::AddPiece(Channel& channel, std::span<const float> piece)
{
    const auto power = transform.Measure(piece);
    std::ranges::transform(channel.power, power, channel.power.begin(), std::plus<>());
    ++channel.pieces;
}

std::int64_t SoundAnalysis::GetPieceEnd(int column) const noexcept
{
    const std::int64_t piece = spectrogram->transform.GetLength();
    const double middle = (column + 0.5) * static_cast<double>(total) / spectrogram->columns;
    return std::clamp(std::llround(middle) + piece / 2, static_cast<long long>(piece),
                      static_cast<long long>(total));
}

void SoundAnalysis::FeedSpectrogram(std::span<const float> block)
{
    const std::int64_t piece = spectrogram->transform.GetLength();
    std::vector<float>& recent = spectrogram->recent; // ends at position after this
    recent.insert(recent.end(), block.begin(), block.end());
    const std::int64_t start = position - static_cast<std::int64_t>(recent.size());
    for (int& done = spectrogram->done; done < spectrogram->columns; ++done)
    {
        const std::int64_t end = GetPieceEnd(done);
        if (end > position)
            break;
        MeasureColumn(std::span(recent).subspan(static_cast<std::size_t>(end - piece - start),
                                                static_cast<std::size_t>(piece)));
    }
    recent.erase(recent.begin(), recent.end() - static_cast<std::ptrdiff_t>(piece));
}

void SoundAnalysis::Finish()
{
    for (Channel& channel : channels)
        if (channel.pieces == 0)
            AddPiece(channel, channel.recent);
}

void SoundAnalysis::MeasureColumn(std::span<const float> piece)
{
    const auto height = static_cast<std::size_t>(spectrogramScale.GetPixelCount());
    spectrogramScale.Spread(
        spectrogram->transform.Measure(piece), rate / 2.0,
        std::span(spectrogram->levels)
            .subspan(static_cast<std::size_t>(spectrogram->done) * height, height));
}

std::span<const float> SoundAnalysis::GetExcerpt(int channel) const
{
    return channels.at(static_cast<std::size_t>(channel)).excerpt;
}

float SoundAnalysis::GetPeak(int channel) const
{
    return channels.at(static_cast<std::size_t>(channel)).peak;
}

double SoundAnalysis::GetRMS(int channel) const
{
    const Channel& measured = channels.at(static_cast<std::size_t>(channel));
    return std::sqrt(measured.squares / static_cast<double>(std::max<std::int64_t>(1, position)));
}

std::vector<double> SoundAnalysis::GetSpectrum(int channel) const
{
    const Channel& measured = channels.at(static_cast<std::size_t>(channel));
    std::vector<double> levels(static_cast<std::size_t>(spectrumScale.GetPixelCount()));
    spectrumScale.Spread(measured.power, rate / 2.0, levels);
    for (double& level : levels)
        level /= std::max(1, measured.pieces);
    return levels;
}

std::span<const double> SoundAnalysis::GetColumn(int column) const
{
    const auto height = static_cast<std::size_t>(spectrogramScale.GetPixelCount());
    return std::span(spectrogram->levels)
        .subspan(static_cast<std::size_t>(column) * height, height);
}
