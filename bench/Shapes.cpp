// What a rebuild of the shape costs: at its default, with each operation alone, and with all of
// them. Beside it a copy of one cycle, and a smoothing of the widest kernel by plain sums.

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "bench/Goals.h"
#include "effect/MSignalGenerator.h"

namespace
{

constexpr std::size_t Length = MSignalGenerator::TableLength;

/// Two points between the ends, which bend it without leaving the box.
void Bend(MEnvelope& curve)
{
    const double width = curve.MaxX - curve.MinX;
    const double height = curve.MaxY - curve.MinY;
    curve.Insert(1, {.X = curve.MinX + 0.3 * width, .Y = curve.MinY + 0.5 * height});
    curve.Insert(2, {.X = curve.MinX + 0.6 * width, .Y = curve.MinY + 0.4 * height});
    for (std::size_t i = 0; i < 3; ++i)
        curve.GetPoints()[i].Curvature = 0.5;
}

void EnableTransforms(MSignalGenerator& generator)
{
    MSignalGeneratorOperations& operations = generator.Operations;
    operations.TransformEnable = operations.AmplitudeTransformEnable = true;
    Bend(operations.Transform);
    Bend(operations.AmplitudeTransform);
}

struct Setting
{
    const char* name;
    void (*apply)(MSignalGenerator&);
};

constexpr Setting Settings[] = {
    {"default", [](MSignalGenerator&) {}},
    {"free curve", [](MSignalGenerator& g) { g.EnvelopeDepth = 1.0; }},
    {"three sources", [](MSignalGenerator& g) { g.EnvelopeDepth = g.StepDepth = 0.5; }},
    {"skew", [](MSignalGenerator& g) { g.Operations.Skew = 0.5; }},
    {"full skew", [](MSignalGenerator& g) { g.Operations.FullSkew = 0.5; }},
    {"negative full skew", [](MSignalGenerator& g) { g.Operations.FullSkew = -0.5; }},
    {"halve", [](MSignalGenerator& g) { g.Operations.Halve = 0.5; }},
    {"one harmonic", [](MSignalGenerator& g) { g.Operations.Harmonic[1] = 0.5; }},
    {"harmonics", [](MSignalGenerator& g) { g.Operations.Harmonic.fill(0.5); }},
    {"harmonics with phases",
     [](MSignalGenerator& g)
     {
         g.Operations.Harmonic.fill(0.5);
         g.Operations.HarmonicPhase.fill(0.3);
     }},
    {"transform",
     [](MSignalGenerator& g)
     {
         EnableTransforms(g);
         g.Operations.AmplitudeTransformEnable = false;
     }},
    {"amplitude transform",
     [](MSignalGenerator& g)
     {
         EnableTransforms(g);
         g.Operations.TransformEnable = false;
     }},
    {"smoothness 0.1", [](MSignalGenerator& g) { g.Smoothness = 0.1; }},
    {"smoothness 1.0", [](MSignalGenerator& g) { g.Smoothness = 1.0; }},
    {"everything",
     [](MSignalGenerator& g)
     {
         EnableTransforms(g);
         g.Operations.Skew = g.Operations.FullSkew = g.Operations.Halve = 0.5;
         g.Operations.Harmonic.fill(0.5);
         g.Operations.HarmonicPhase.fill(0.3);
         g.Smoothness = 1.0;
     }},
};

void Rebuild(benchmark::State& state, const Setting& setting)
{
    const auto generator = std::make_unique<MSignalGenerator>();
    setting.apply(*generator);
    generator->Rebuild();
    benchmark::DoNotOptimize(generator->GetTable().data());
    for (auto _ : state)
    {
        generator->Rebuild();
        benchmark::ClobberMemory();
    }
}

void Copy(benchmark::State& state)
{
    std::array<float, Length> from{};
    std::array<float, Length> to{};
    benchmark::DoNotOptimize(from.data());
    benchmark::DoNotOptimize(to.data());
    for (auto _ : state)
    {
        std::memcpy(to.data(), from.data(), sizeof(from));
        benchmark::ClobberMemory();
    }
}

void Convolution(benchmark::State& state)
{
    constexpr std::size_t Taps = 513;
    std::array<float, Taps> kernel{};
    std::array<float, Length + Taps> padded{};
    std::array<float, Length> to{};
    kernel.fill(1.0f / Taps);
    padded.fill(0.5f);
    benchmark::DoNotOptimize(kernel.data());
    benchmark::DoNotOptimize(padded.data());
    benchmark::DoNotOptimize(to.data());
    for (auto _ : state)
    {
        for (std::size_t i = 0; i < Length; ++i)
        {
            float sum = 0.0f;
            for (std::size_t tap = 0; tap < Taps; ++tap)
                sum += padded[i + tap] * kernel[tap];
            to[i] = sum;
        }
        benchmark::ClobberMemory();
    }
}

[[maybe_unused]] const bool isRegistered = []
{
    const std::string copy = "Shapes/copy 8192";
    const std::string convolution = "Shapes/convolution of 513 taps";
    benchmark::RegisterBenchmark(copy.c_str(), &Copy);
    benchmark::RegisterBenchmark(convolution.c_str(), &Convolution);
    for (const Setting& setting : Settings)
        benchmark::RegisterBenchmark((std::string("Shapes/rebuild/") + setting.name).c_str(),
                                     [&setting](benchmark::State& state)
                                     { Rebuild(state, setting); });
    RegisterGoal({"rebuild of the default shape, in copies", "Shapes/rebuild/default", copy, 20.0});
    RegisterGoal(
        {"rebuild with everything, of plain sums", "Shapes/rebuild/everything", convolution, 0.30});
    RegisterGoal({"rebuild with smoothness 1.0, of plain sums", "Shapes/rebuild/smoothness 1.0",
                  convolution, 0.13});
    return true;
}();

} // namespace
