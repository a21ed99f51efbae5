// What curves cost to compile and to read.

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/Goals.h"
#include "curves/MEnvelope.h"
#include "curves/MEnvelopeComputer.h"

namespace
{

using Type = MEnvelopePoint::ControlType;

constexpr int Samples = 8192; ///< a cycle of the oscillator's shape

/// Segments of one kind over 0 to 1, up and down.
MEnvelope MakeCurve(int segments, Type type, double curvature, double smoothing = 0.0)
{
    MEnvelope curve(0.0, 1.0, -1.0, 1.0);
    for (int i = 0; i <= segments; ++i)
    {
        MEnvelopePoint& point =
            curve.Add(static_cast<double>(i) / segments, i % 2 == 0 ? -0.8 : 0.9);
        point.Type = type;
        point.Curvature = curvature;
        point.CurvatureX = 0.5 * curvature;
        point.SmoothX1 = smoothing;
    }
    return curve;
}

void CopySamples(benchmark::State& state)
{
    const std::vector<float> from(Samples, 0.5f);
    std::vector<float> to(Samples);
    for (auto _ : state)
    {
        std::memcpy(to.data(), from.data(), Samples * sizeof(float));
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
}

void Compile(benchmark::State& state, const MEnvelope& curve)
{
    MEnvelopeComputer computer;
    for (auto _ : state)
    {
        computer.Compile(curve);
        benchmark::ClobberMemory();
    }
}

/// @p read gets the computer, its cursor at the start, and a block to fill.
template <class Read>
void ReadCurve(benchmark::State& state, const MEnvelope& curve, Read read)
{
    MEnvelopeComputer computer;
    computer.Compile(curve);
    std::vector<float> block(Samples);
    for (auto _ : state)
    {
        computer.SeekBack(0.0);
        read(computer, block.data());
        benchmark::DoNotOptimize(block.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * Samples);
}

void FillBlock(MEnvelopeComputer& computer, float* block)
{
    computer.FillFloat(block, 0.0, 1.0 / Samples, Samples);
}

void GetEach(MEnvelopeComputer& computer, float* block)
{
    for (int i = 0; i < Samples; ++i)
        block[i] = static_cast<float>(computer.Get(i * (1.0 / Samples)));
}

/// One turn of a sine through the whole curve, copied anew each time.
class MapWave
{
public:
    explicit MapWave(double turns)
    {
        for (std::size_t i = 0; i < wave.size(); ++i)
            wave[i] = static_cast<float>(
                0.5 + 0.5 * std::sin(turns * 6.283185 * static_cast<double>(i) / Samples));
    }

    void operator()(MEnvelopeComputer& computer, float* block) const
    {
        std::memcpy(block, wave.data(), Samples * sizeof(float));
        computer.MapFloat(block, Samples);
    }

private:
    std::vector<float> wave = std::vector<float>(Samples);
};

template <class... Arguments>
void Register(const std::string& what, Arguments... arguments)
{
    benchmark::RegisterBenchmark(("Curves/" + what).c_str(), arguments...);
}

template <class Read>
void RegisterRead(const std::string& what, const MEnvelope& curve, Read read)
{
    Register(what, [=](benchmark::State& state) { ReadCurve(state, curve, read); });
}

/// In copies of a block; one takes some 0.6 us where this was tuned.
void RegisterPasses(const std::string& what, const std::string& name, double passes)
{
    RegisterGoal({what, "Curves/" + name, "Curves/copy 8192", passes});
}

[[maybe_unused]] const bool isRegistered = []
{
    Register("copy 8192", CopySamples);
    const MEnvelope fourthOrder = MakeCurve(16, Type::Mode2, 0.7);
    RegisterRead("Fill/16 fourth order", fourthOrder, FillBlock);
    RegisterRead("Fill/64 smoothed", MakeCurve(63, Type::Mode2, 0.7, 0.5), FillBlock);
    RegisterRead("Fill/16 lines", MakeCurve(16, Type::Mode1, 0.0), FillBlock);
    RegisterRead("Fill/16 quadratic", MakeCurve(16, Type::Mode1, 0.7), FillBlock);
    RegisterRead("Fill/16 powers", MakeCurve(16, Type::Mode3, 0.7), FillBlock);
    RegisterRead("Fill/16 Bezier", MakeCurve(16, Type::Free1, 0.7), FillBlock);
    RegisterRead("Fill/16 cubic", MakeCurve(16, Type::Smooth2, 0.0), FillBlock);
    RegisterRead("Fill/16 stairs", MakeCurve(16, Type::Stairs, 0.7), FillBlock);
    RegisterRead("Fill/16 pulses", MakeCurve(16, Type::Pulses, 0.7), FillBlock);
    RegisterRead("Get/16 fourth order", fourthOrder, GetEach);
    RegisterRead("Map/4 points", MakeCurve(3, Type::Mode2, 0.7), MapWave(1.0));
    RegisterRead("Map/4 points, Bezier", MakeCurve(3, Type::Free1, 0.7), MapWave(1.0));
    RegisterRead("Map/4 points, noisy", MakeCurve(3, Type::Mode2, 0.7), MapWave(3001.7));
    Register("Compile/64 points", Compile, MakeCurve(63, Type::Mode2, 0.7));
    Register("Compile/64 points, smoothed", Compile, MakeCurve(63, Type::Mode2, 0.7, 0.5));
    Register("Compile/64 points, powers, smoothed", Compile, MakeCurve(63, Type::Mode3, 0.7, 0.5));

    RegisterPasses("a table of 16 fourth order segments", "Fill/16 fourth order", 15.0);
    RegisterPasses("a wave through a curve of 4 points", "Map/4 points", 40.0);
    RegisterPasses("compiling 64 smoothed points", "Compile/64 points, smoothed", 33.0);
    return true;
}();

} // namespace
