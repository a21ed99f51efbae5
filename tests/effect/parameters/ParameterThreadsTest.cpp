#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "effect/TonvaleAudioEffectPlugin.h"
#include "effect/parameters/MParameterList.h"
#include "effect/parameters/MParameterOwner.h"
#include "foundation/threads/MLock.h"

namespace
{

class CountingOwner : public MParameterOwner
{
public:
    CountingOwner() = default;
    CountingOwner(const CountingOwner&) = delete;
    CountingOwner& operator=(const CountingOwner&) = delete;
    virtual ~CountingOwner() = default;

    MLock& GetProcessingLock() noexcept override { return lock; }
    void NeedUpdateEditor(MAutomationAdapter& /*adapter*/) override { ++updates; }
    void OnCustomParameterChanged(MAutomationAdapter& /*adapter*/) override {}

    MLock lock;
    std::atomic<int> updates{0};
};

TEST(ParameterThreads, ValuesAreSetWhileOthersReadAndRender)
{
    constexpr int Rounds = 200;
    TonvaleAudioEffectPlugin effect;
    CountingOwner owner;
    MParameterList list;
    list.Wire(effect, owner);
    effect.InitProcessing(1, 48000);

    const auto write = [&]
    {
        for (int round = 0; round < Rounds; ++round)
            for (int index = 0; index < list.GetParameterCount(); ++index)
            {
                MAutomationAdapter& adapter = *list.FindAdapter(index);
                adapter.SetParameter(index - adapter.GetFirstIndex(), round % 2, round % 3 == 0);
            }
    };
    std::thread first(write);
    std::thread second(write);
    float block[32];
    float* const outputs[] = {block};
    for (int round = 0; round < Rounds; ++round)
    {
        effect.Process(nullptr, nullptr, outputs, 32);
        for (int index = 0; index < list.GetParameterCount(); ++index)
        {
            MAutomationAdapter& adapter = *list.FindAdapter(index);
            const int own = index - adapter.GetFirstIndex();
            adapter.SetModulated(own, round % 2 == 0);
            const double value01 = adapter.GetRestorableParameter(own);
            EXPECT_GE(value01, 0.0);
            EXPECT_LE(value01, 1.0);
            EXPECT_FALSE(adapter.GetParameterValueName(own).IsEmpty());
            EXPECT_FALSE(adapter.GetParameterValueNameFrom01(own, 0.5).IsEmpty());
            adapter.ParseParameterValueName(own, "1");
        }
    }
    first.join();
    second.join();
    EXPECT_GT(owner.updates, Rounds);
}

} // namespace
