// What each kernel costs, beside the plain loop that it has to equal and the least that it could
// cost: setting or copying the memory.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/Goals.h"
#include "dsp/kernels/Arithmetic.h"
#include "dsp/kernels/Cycles.h"
#include "dsp/kernels/Filters.h"
#include "dsp/kernels/Levels.h"
#include "dsp/kernels/Polynomials.h"
#include "dsp/kernels/Ramps.h"
#include "dsp/kernels/RealFFT.h"
#include "dsp/kernels/Reference.h"
#include "dsp/kernels/Shapes.h"
#include "dsp/kernels/Spectra.h"

namespace
{

using namespace kernels;

constexpr int MaxLength = 8192;
constexpr int MaxStride = 8;
constexpr int TapCount = 64;
constexpr int Mask = CycleLength - 1;
constexpr double DX = 1.0 / MaxLength;
constexpr std::array Coefficients{0.1, -0.7, 1.3, 0.45, -2.1};

template <class Block>
void FillWithNoise(Block& block, float low, float high)
{
    std::mt19937 random(static_cast<unsigned>(block.size()));
    std::uniform_real_distribution<float> level(low, high);
    for (auto& sample : block)
        sample = level(random);
}

/// A block that begins at a boundary of cache lines: elsewhere the time of a block that is
/// read as soon as it is written depends on where exactly it came to lie.
template <typename T, std::size_t Length = MaxLength>
struct alignas(64) BlockT : std::array<T, Length>
{
};

/// What the kernels work on. Repeated operations may take a block beyond all numbers, but not
/// into the denormal ones, which are slow.
struct Blocks
{
    Blocks()
    {
        FillWithNoise(a, -1.0f, 1.0f);
        FillWithNoise(b, -1.0f, 1.0f);
        FillWithNoise(positions, 0.0f, Mask);
        FillWithNoise(taps, -1.0f, 1.0f);
        FillWithNoise(doublePositions, 0.0f, Mask);
        other.fill(0.75f);
        spectrum.fill(1.0f);
        spectrumA.fill(Complex(0.3f, 0.7f));
        spectrumB.fill(Complex(-0.9f, 0.2f));
    }

    BlockT<float> dst{};
    BlockT<float> other{};
    BlockT<float, MaxLength * MaxStride + TapCount> a{};
    BlockT<float> b{};
    BlockT<float> positions{};
    BlockT<float, TapCount> taps{};
    BlockT<double> doublePositions{};
    BlockT<double> doubles{};
    BlockT<std::uint32_t> pixels{};
    BlockT<Complex> spectrum{};
    BlockT<Complex> spectrumA{};
    BlockT<Complex> spectrumB{};
    double result = 0.0;
};

using Call = void (*)(Blocks& x, int n);

struct Row
{
    const char* what;
    Call kernel;
    Call plain; ///< null for those that are a plain loop or the C library's
};

#define ROW(what, ...)                                                                             \
    {                                                                                              \
        what, [](Blocks& x, int n) { kernels::__VA_ARGS__; },                                      \
            [](Blocks& x, int n) { kernels::reference::__VA_ARGS__; }                              \
    }

#define RESULT_ROW(what, ...)                                                                      \
    {                                                                                              \
        what, [](Blocks& x, int n) { x.result = kernels::__VA_ARGS__; },                           \
            [](Blocks& x, int n) { x.result = kernels::reference::__VA_ARGS__; }                   \
    }

constexpr Row Rows[] = {
    {"memset",
     [](Blocks& x, int n)
     { std::memset(x.dst.data(), 0, static_cast<std::size_t>(n) * sizeof(float)); },
     nullptr},
    {"memcpy",
     [](Blocks& x, int n)
     { std::memcpy(x.dst.data(), x.a.data(), static_cast<std::size_t>(n) * sizeof(float)); },
     nullptr},
    {"Zero", [](Blocks& x, int n) { Zero(x.dst.data(), n); }, nullptr},
    ROW("Fill", Fill(x.dst.data(), 0.7f, n)),
    ROW("FillDouble", FillDouble(x.doubles.data(), 0.7, n)),
    ROW("FillPixels", FillPixels(x.pixels.data(), 0xFF80A001, n)),
    ROW("Copy", Copy(x.dst.data(), x.a.data(), n)),
    ROW("Scale", Scale(x.dst.data(), x.a.data(), 0.7f, n)),
    ROW("Add", Add(x.dst.data(), x.a.data(), n)),
    ROW("ScaleAdd", ScaleAdd(x.dst.data(), x.a.data(), 0.7f, n)),
    ROW("Mix", Mix(x.dst.data(), x.a.data(), 0.7f, x.b.data(), 0.3f, n)),
    ROW("AddConstant", AddConstant(x.dst.data(), 1e-18f, n)),
    ROW("Clamp", Clamp(x.b.data(), 0.9f, n)),
    ROW("ZeroNonFinite", ZeroNonFinite(x.b.data(), n)),
    ROW("MidSide", MidSide(x.dst.data(), x.other.data(), n)),
    ROW("SumDifference", SumDifference(x.dst.data(), x.other.data(), n)),
    RESULT_ROW("PeakAbs", PeakAbs(x.a.data(), n)),
    RESULT_ROW("SumSquares", SumSquares(x.a.data(), n)),
    ROW("RampScale", RampScale(x.dst.data(), 1.0f, 1e-6f, n)),
    ROW("RampScaleAdd", RampScaleAdd(x.dst.data(), x.a.data(), 1.0f, 1e-6f, n)),
    RESULT_ROW("ReadCycle", ReadCycle(x.dst.data(), x.a.data(), 0.3, 440.0 / 48000.0, n)),
    ROW("Lookup", Lookup(x.dst.data(), x.a.data(), x.positions.data(), n, Mask)),
    ROW("Lookup/double", Lookup(x.dst.data(), x.a.data(), x.doublePositions.data(), n, Mask)),
    ROW("AddStrided/stride:2", AddStrided(x.dst.data(), x.a.data(), 5, 2, 1e-3f, n, Mask)),
    ROW("AddStrided/stride:7", AddStrided(x.dst.data(), x.a.data(), 5, 7, 1e-3f, n, Mask)),
    ROW("AddStrided/stride:8", AddStrided(x.dst.data(), x.a.data(), 5, 8, 1e-3f, n, Mask)),
    ROW("PowerRamp", PowerRamp(x.doubles.data(), DX, 2.7, 0, n)),
    {"Resample", [](Blocks& x, int n) { Resample(x.dst.data(), n, x.a.data(), MaxLength / 2); },
     nullptr},
    ROW("Polynomial/float/order:2", Polynomial(x.dst.data(), Coefficients.data(), 2, 0.1, DX, n)),
    ROW("Polynomial/float/order:4", Polynomial(x.dst.data(), Coefficients.data(), 4, 0.1, DX, n)),
    ROW("Polynomial/double/order:4",
        Polynomial(x.doubles.data(), Coefficients.data(), 4, 0.1, DX, n)),
    ROW("FIR/stride:1", FIR(x.dst.data(), x.a.data(), x.taps.data(), TapCount, n, 1)),
    ROW("FIR/stride:2", FIR(x.dst.data(), x.a.data(), x.taps.data(), TapCount, n, 2)),
    ROW("FIR/stride:8", FIR(x.dst.data(), x.a.data(), x.taps.data(), TapCount, n, 8)),
    ROW("MultiplySpectra",
        MultiplySpectra(x.spectrum.data(), x.spectrumA.data(), x.spectrumB.data(), n)),
    ROW("PowerSpectrum", PowerSpectrum(x.spectrum.data(), n)),
};

#undef ROW
#undef RESULT_ROW

void Run(benchmark::State& state, Call call)
{
    const auto samples = static_cast<int>(state.range(0));
    const auto blocks = std::make_unique<Blocks>();
    benchmark::DoNotOptimize(blocks.get());
    for (auto _ : state)
    {
        call(*blocks, samples);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * samples);
}

void RunForward(benchmark::State& state)
{
    const auto size = static_cast<int>(state.range(0));
    RealFFT fft(size);
    std::vector<float> time(static_cast<std::size_t>(size));
    FillWithNoise(time, -1.0f, 1.0f);
    std::vector<Complex> spectrum(time.size());
    for (auto _ : state)
    {
        fft.Forward(time.data(), spectrum.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * size);
}

void RunInverse(benchmark::State& state)
{
    const auto size = static_cast<int>(state.range(0));
    RealFFT fft(size);
    std::vector<float> time(static_cast<std::size_t>(size));
    FillWithNoise(time, -1.0f, 1.0f);
    std::vector<Complex> spectrum(time.size());
    fft.Forward(time.data(), spectrum.data());
    for (auto _ : state)
    {
        fft.Inverse(spectrum.data(), time.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * size);
}

[[maybe_unused]] const bool isRegistered = []
{
    for (const Row& row : Rows)
    {
        const std::string name = std::string("Kernels/") + row.what;
        for (const Call call : {row.kernel, row.plain})
            if (call != nullptr)
                benchmark::RegisterBenchmark((call == row.plain ? name + "/plain" : name).c_str(),
                                             Run, call)
                    ->ArgName("block")
                    ->Arg(64)
                    ->Arg(512)
                    ->Arg(MaxLength);
        if (row.plain != nullptr)
            RegisterGoal({std::string(row.what) + " beside its plain loop, 512 samples",
                          name + "/block:512", name + "/plain/block:512", 1.0});
    }
    benchmark::RegisterBenchmark("Kernels/RealFFT/Forward", RunForward)
        ->ArgName("size")
        ->Arg(512)
        ->Arg(8192)
        ->Arg(16384);
    benchmark::RegisterBenchmark("Kernels/RealFFT/Inverse", RunInverse)
        ->ArgName("size")
        ->Arg(512)
        ->Arg(8192)
        ->Arg(16384);
    return true;
}();

} // namespace
