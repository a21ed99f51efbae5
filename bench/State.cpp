// How long blocks have to wait, or are silent, while a state is stored or loaded.

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

#include <benchmark/benchmark.h>

#include "effect/MAudioEffectPlugin.h"
#include "effect/MPluginInfo.h"
#include "effect/MPluginSpecialRecord.h"
#include "effect/MSignalGenerator.h"
#include "effect/TonvaleAudioEffectPluginInterface.h"
#include "foundation/xml/MStorageDescriptor.h"
#include "foundation/xml/MXMLItem.h"
#include "shell/MAudioEffectPluginToAudioPluginAdapter.h"

namespace
{

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Remembers for how long it was held at most.
class TimedLock final : public MLock
{
public:
    int Lock(int timeout) noexcept override
    {
        const int result = MLock::Lock(timeout);
        if (result == 0 && depth++ == 0)
            start = Clock::now();
        return result;
    }
    void Unlock() noexcept override
    {
        if (--depth == 0)
            longest = std::max(longest, SecondsSince(start));
        MLock::Unlock();
    }

    double longest = 0.0; ///< seconds

private:
    int depth = 0;
    Clock::time_point start;
};

struct TimedLockOwner
{
    TimedLock timedLock;
};

/// A shell whose processing lock is timed; the lock outlives the effect, which shares it.
class TimedShell final : private TimedLockOwner, public MAudioEffectPluginToAudioPluginAdapter
{
public:
    TimedShell()
    {
        Initialize("Tonvale", "Quillfern", &TonvaleAudioEffectPluginInterface, 450, 100);
        InitProcessing();
    }

    MLock& GetProcessingLock() noexcept override { return timedLock; }
    /// The longest time since the last call.
    double TakeLongest() noexcept { return std::exchange(timedLock.longest, 0.0); }
};

void AddPoints(MEnvelope& curve, int count)
{
    for (int i = 1; i < count; ++i)
    {
        MEnvelopePoint point = curve.GetPoints().front();
        point.X = static_cast<double>(i) / count;
        point.Flags = 0;
        curve.Insert(static_cast<std::size_t>(i), point);
    }
}

/// Times a store or a load: the whole if @p isWhole, else the longest hold of the lock. The
/// argument is the number of points that each of the three curves gets in addition.
void RunState(benchmark::State& state, bool isStoring, bool isWhole)
{
    TimedShell shell;
    auto& generator =
        *static_cast<MSignalGenerator*>(shell.GetEffect()->GetInfo().specials[0].data);
    const auto points = static_cast<int>(state.range(0));
    for (MEnvelope* const curve : {&generator.Envelope, &generator.Operations.Transform,
                                   &generator.Operations.AmplitudeTransform})
        AddPoints(*curve, points);
    generator.EnvelopeDepth = 1.0;
    generator.Operations.TransformEnable = generator.Operations.AmplitudeTransformEnable =
        points > 0;
    MXMLItem item("settings");
    shell.Store({.storing = true, .item = item});
    shell.TakeLongest();
    std::array<double, 5> times{};
    for ([[maybe_unused]] const auto round : state)
    {
        for (double& time : times)
        {
            const Clock::time_point start = Clock::now();
            shell.Store({.storing = isStoring, .item = item});
            const double whole = SecondsSince(start);
            const double held = shell.TakeLongest();
            time = isWhole ? whole : held;
        }
        // The middle one: a thread that has to wait for the processor holds its lock meanwhile.
        std::ranges::nth_element(times, times.begin() + times.size() / 2);
        state.SetIterationTime(times[times.size() / 2]);
    }
}

void RegisterState(const char* name, bool isStoring, bool isWhole)
{
    benchmark::RegisterBenchmark(name, RunState, isStoring, isWhole)
        ->Arg(0)
        ->Arg(2000)
        ->Iterations(4)
        ->UseManualTime();
}

[[maybe_unused]] const bool isRegistered = []
{
    RegisterState("State/Store/LockHeld", true, false);
    RegisterState("State/Store/Whole", true, true);
    RegisterState("State/Load/LockHeld", false, false);
    RegisterState("State/Load/Whole", false, true);
    return true;
}();

} // namespace
