#include "shell/MUpsampler.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "dsp/kernels/Arithmetic.h"
#include "dsp/kernels/Levels.h"

namespace
{

constexpr double PassBand = 0.45; ///< as a share of the host's rate
constexpr double StopBand = 0.55;
constexpr int CubicTapCount = 4;
constexpr int CubicDelay = 2; ///< host samples

constexpr int MaxPieceLength = 512;
constexpr int MinPieceLength = 128;
constexpr int PieceLengthAtHighRate = 1024;

/// A piece of the curve through four samples, @p a being the oldest and @p x the newest: from the
/// second oldest, @p c, at a @p t of 0 to the third, @p b, at 1.
constexpr double Cubic(double a, double b, double c, double x, double t)
{
    return ((((c - b) * 3.0 - a + x) * 0.5 * t + (2.0 * b + a - (5.0 * c + x) * 0.5)) * t +
            (b - a) * 0.5) *
               t +
           c;
}

/// By factor and phase, four taps each: the curve is a sum of its samples, the oldest first, times
/// what each alone would give.
constexpr auto CubicTaps = []
{
    std::array<std::array<float, std::size_t{CubicTapCount} * MUpsampler::MaxFactor>,
               MUpsampler::MaxFactor + 1>
        taps{};
    for (std::size_t factor = 2; factor < taps.size(); ++factor)
        for (std::size_t phase = 0; phase < factor; ++phase)
        {
            const double t = static_cast<double>(phase) / static_cast<double>(factor);
            float* tap = &taps[factor][phase * std::size_t{CubicTapCount}];
            tap[0] = static_cast<float>(Cubic(1.0, 0.0, 0.0, 0.0, t));
            tap[1] = static_cast<float>(Cubic(0.0, 0.0, 1.0, 0.0, t));
            tap[2] = static_cast<float>(Cubic(0.0, 1.0, 0.0, 0.0, t));
            tap[3] = static_cast<float>(Cubic(0.0, 0.0, 0.0, 1.0, t));
        }
    return taps;
}();

int SmallestPrimeOf(int number)
{
    int prime = 2;
    while (number % prime != 0)
        ++prime;
    return prime;
}

/// A @p past and @p n samples to come.
std::vector<float> MakePast(int past, int n)
{
    const int length = past + n;
    return std::vector<float>(static_cast<std::size_t>(length));
}

/// Moves the last @p past samples to the front, after @p n have come in.
void Keep(std::vector<float>& samples, int past, int n) noexcept
{
    kernels::Copy(samples.data(), samples.data() + n, past);
}

} // namespace

int MUpsampler::GetLatency(int factor, bool isHighQuality) noexcept
{
    if (factor < 2)
        return 0;
    return (isHighQuality ? 6144 : 1536) / factor;
}

void MUpsampler::Configure(int hostRate, int newFactor, bool isHighQuality, int maxSamples)
{
    newFactor = std::clamp(newFactor, 2, MaxFactor);
    if (hostRate != rate || newFactor != factor || isHighQuality != isHigh)
    {
        rate = hostRate;
        factor = newFactor;
        isHigh = isHighQuality;
        pieceLength = std::clamp(PieceLengthAtHighRate / factor, MinPieceLength, MaxPieceLength);
        stages.clear();
        if (isHigh)
            MakeLowPasses();
        else
            MakeCubic();
        Reset();
    }
    Reserve(maxSamples);
}

void MUpsampler::MakeLowPasses()
{
    const int first = SmallestPrimeOf(factor);
    const int second = factor / first;
    stages.emplace_back().lowPass = KaiserLowPass::Get(first, StopBand - PassBand, 1);
    // The steep step leaves room for a short filter; together they delay whole host samples.
    if (second > 1)
        stages.emplace_back().lowPass =
            KaiserLowPass::Get(second, 1.0 - 2.0 * StopBand / first, first);

    int delay = 0;
    int multiple = 1; // of the host's rate
    memoryLength = 0;
    for (Stage& stage : stages)
    {
        stage.filter = stage.lowPass->GetPhases();
        delay += 2 * stage.lowPass->GetDelay() / multiple;
        memoryLength += stage.LowerPast() / multiple + 1;
        stage.lower = MakePast(stage.LowerPast(), pieceLength * multiple);
        multiple *= stage.filter.phases;
        stage.higher = MakePast(stage.HigherPast(), pieceLength * multiple);
    }
    plainDelay.SetLength(GetLatency(factor, true) - delay);
}

void MUpsampler::MakeCubic()
{
    Stage& stage = stages.emplace_back();
    stage.filter = {.taps = CubicTaps[static_cast<std::size_t>(factor)].data(),
                    .tapCount = CubicTapCount,
                    .phases = factor,
                    .isPassing = true};
    stage.lower = MakePast(stage.LowerPast(), pieceLength);
    memoryLength = stage.LowerPast();
    plainDelay.SetLength(GetLatency(factor, false) - CubicDelay);
}

void MUpsampler::Reserve(int samples)
{
    const std::size_t length =
        static_cast<std::size_t>(std::max(samples, 0)) * static_cast<std::size_t>(factor);
    if (length <= output.size())
        return;
    upsampled.resize(length);
    output.resize(length);
}

float* MUpsampler::Upsample(const float* input, int n)
{
    Reserve(n);
    for (int done = 0; done < n; done += pieceLength)
    {
        const int count = std::min(n - done, pieceLength);
        const float* piece = input == nullptr ? nullptr : input + done;
        float* destination = upsampled.data() + std::ptrdiff_t{done} * factor;
        if (IsAtRest(piece, count))
            kernels::Zero(destination, count * factor);
        else
            Stretch(destination, piece, count);
    }
    return upsampled.data();
}

void MUpsampler::Downsample(float* destination, int n, bool isAdding)
{
    Reserve(n);
    std::array<float, MaxPieceLength> piece;
    for (int done = 0; done < n; done += pieceLength)
    {
        const int count = std::min(n - done, pieceLength);
        Squeeze(piece.data(), output.data() + std::ptrdiff_t{done} * factor, count);
        plainDelay.Process(piece.data(), piece.data(), count);
        if (isAdding)
            kernels::Add(destination + done, piece.data(), count);
        else
            kernels::Copy(destination + done, piece.data(), count);
    }
}

void MUpsampler::Reset() noexcept
{
    for (Stage& stage : stages)
    {
        std::ranges::fill(stage.lower, 0.0f);
        std::ranges::fill(stage.higher, 0.0f);
    }
    silentSamples = memoryLength;
    plainDelay.Clear();
}

/// Counts the silence that comes in. After a whole memory of it nothing is left to be worked out.
bool MUpsampler::IsAtRest(const float* input, int n) noexcept
{
    const bool isSilent = input == nullptr || kernels::PeakAbs(input, n) <= SilencePeak;
    if (isSilent && silentSamples >= memoryLength)
    {
        // Samples that are not numbers count as silence, but must not stay.
        for (Stage& stage : stages)
            kernels::Zero(stage.lower.data(), stage.LowerPast());
        return true;
    }
    silentSamples = isSilent ? silentSamples + n : 0;
    return false;
}

/// At most pieceLength samples of @p input.
void MUpsampler::Stretch(float* destination, const float* input, int n) noexcept
{
    Stage& first = stages.front();
    if (input == nullptr)
        kernels::Zero(first.lower.data() + first.LowerPast(), n);
    else
        kernels::Copy(first.lower.data() + first.LowerPast(), input, n);

    for (std::size_t i = 0; i < stages.size(); ++i)
    {
        Stage& stage = stages[i];
        const bool isLast = i + 1 == stages.size();
        float* to = isLast ? destination : stages[i + 1].lower.data() + stages[i + 1].LowerPast();
        kernels::StretchFIR(to, stage.lower.data(), stage.filter, n);
        Keep(stage.lower, stage.LowerPast(), n);
        n *= stage.filter.phases;
    }
}

/// @p n at most pieceLength samples of @p destination.
void MUpsampler::Squeeze(float* destination, const float* source, int n) noexcept
{
    if (!isHigh)
    {
        for (int i = 0; i < n; ++i)
            destination[i] = source[std::ptrdiff_t{i} * factor];
        return;
    }

    Stage& last = stages.back();
    kernels::Copy(last.higher.data() + last.HigherPast(), source, n * factor);
    int samples = n * factor;
    for (std::size_t i = stages.size(); i-- > 0;)
    {
        Stage& stage = stages[i];
        const int frames = samples / stage.filter.phases;
        float* to = i == 0 ? destination : stages[i - 1].higher.data() + stages[i - 1].HigherPast();
        kernels::SqueezeFIR(to, stage.higher.data(), stage.filter, frames);
        Keep(stage.higher, stage.HigherPast(), samples);
        samples = frames;
    }
    kernels::Scale(destination, destination, 1.0f / static_cast<float>(factor), n);
}
