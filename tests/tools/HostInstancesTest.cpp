// States and instances of both built modules, while they sound and while others come and go.

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "tests/tools/ModuleUnderTest.h"
#include "tools/render/FrequencyMeter.h"

namespace
{

constexpr int Length = ModuleUnderTest::MaxBlock;

/// Its parameter is the path of a module.
class HostInstances : public testing::TestWithParam<const char*>
{
};
using HostInstancesThreads = HostInstances;

constexpr auto NameTest = [](const auto& path) { return NameStandard(path.param); };
INSTANTIATE_TEST_SUITE_P(Both, HostInstances, testing::ValuesIn(ModulePaths), NameTest);
INSTANTIATE_TEST_SUITE_P(Both, HostInstancesThreads, testing::ValuesIn(ModulePaths), NameTest);

void SetAll(const ModuleUnderTest& module, double value01)
{
    for (int i = 0; i < module->GetParameterCount(); ++i)
        module->Set01(i, value01);
}

TEST_P(HostInstances, AStateFromElsewhereTakesOverWhileItSounds)
{
    constexpr int Block = 64;
    constexpr int Settled = 24000;
    FrequencyMeter meter;
    for (const char* const origin : ModulePaths)
    {
        ModuleUnderTest source(origin);
        SetAll(source, 0.6); // a frequency, all pitches, and another shape
        source.SetGain("Dry", 0.0);
        source->Start(2, ModuleUnderTest::Rate, Length);
        const Sound expected = source.PlayLeft(Settled);
        const double hz = meter.Measure(expected, ModuleUnderTest::Rate).value_or(0.0);
        EXPECT_GT(hz, 0.0);

        ModuleUnderTest module(GetParam());
        module.Start(0.0, 1.0);
        for (int block = 0; block < 300; ++block)
        {
            if (block == 100)
                module->LoadState(source->SaveState());
            const float peak = FindPeak(module.PlayLeft(Block));
            EXPECT_TRUE(peak > 0.01f && peak <= 1.01f) << peak << " in block " << block;
        }
        const Sound sound = module.PlayLeft(Settled);
        EXPECT_NEAR(meter.Measure(sound, ModuleUnderTest::Rate).value_or(1.0), hz, 1e-6 * hz);
        EXPECT_NEAR(FindPeak(sound), FindPeak(expected), 0.01f);
    }
}

/// The state of an instance, broken in many ways; none of them may be loaded.
std::vector<std::vector<std::byte>> BreakState(const std::vector<std::byte>& state)
{
    constexpr std::ptrdiff_t Checksum = 4; // bytes at the end; behind the data, nobody misses them
    std::vector<std::vector<std::byte>> broken = {{}, std::vector<std::byte>(1000)};
    const auto size = static_cast<std::ptrdiff_t>(state.size());
    for (const std::ptrdiff_t kept : {std::ptrdiff_t{1}, size / 2, size - Checksum - 1})
        broken.emplace_back(state.begin(), state.begin() + kept);
    broken.push_back(state);
    broken.back()[0] ^= std::byte{1};
    std::mt19937 random(7);
    for (const std::size_t length : {std::size_t{30}, state.size()})
        std::ranges::generate(broken.emplace_back(length),
                              [&] { return static_cast<std::byte>(random()); });
    return broken;
}

TEST_P(HostInstances, BrokenStatesAreRefusedAndNotHeard)
{
    ModuleUnderTest module(GetParam());
    ModuleUnderTest other(GetParam());
    for (ModuleUnderTest* const instance : {&module, &other})
    {
        instance->Start(0.25, 0.5);
        instance->StartNote(63);
    }
    for (const std::vector<std::byte>& broken : BreakState(module->SaveState()))
    {
        EXPECT_THROW(module->LoadState(broken), MException) << broken.size();
        EXPECT_TRUE(module.PlayLeft(Length) == other.PlayLeft(Length)) << broken.size();
    }
    EXPECT_TRUE(module->SaveState() == other->SaveState());
}

/// Instances of both modules side by side, which end one by one; those that are left play on as a
/// lone one does.
TEST(HostInstances, ComeAndGoInAnyOrder)
{
    constexpr std::size_t Count = 8;
    ModuleUnderTest lone(ModulePaths[0]);
    lone.Start(0.0, 1.0);
    std::vector<Sound> expected(Count);
    for (Sound& sound : expected)
        sound = lone.PlayLeft(Length);

    std::array<std::size_t, Count> order{};
    std::iota(order.begin(), order.end(), 0u);
    std::mt19937 random(5);
    for (int round = 0; round < 6; ++round)
    {
        std::vector<std::unique_ptr<ModuleUnderTest>> instances;
        for (std::size_t i = 0; i < Count; ++i)
            instances.push_back(std::make_unique<ModuleUnderTest>(ModulePaths[i % 2]));
        for (const auto& instance : instances)
            instance->Start(0.0, 1.0);
        for (std::size_t gone = 0; gone < Count; ++gone)
        {
            for (const auto& instance : instances)
                EXPECT_TRUE(!instance || instance->PlayLeft(Length) == expected[gone]) << gone;
            instances[order.at(gone)].reset();
        }
        if (round == 0)
            std::ranges::reverse(order);
        else
            std::ranges::shuffle(order, random);
    }
}

TEST_P(HostInstancesThreads, InstancesLiveOnAnyThread)
{
    const auto pluginModule = PluginModule::Open(GetParam());
    const auto play = [&]
    {
        ModuleUnderTest instance(pluginModule);
        instance.Start(0.0, 1.0);
        instance.StartNote(70);
        instance->LoadState(instance->SaveState());
        return instance.PlayLeft(1000);
    };
    const Sound expected = play();
    EXPECT_GT(FindPeak(expected), 0.9f);
    std::array<std::thread, 4> threads;
    for (std::thread& thread : threads)
        thread = std::thread(
            [&]
            {
                for (int round = 0; round < 10; ++round)
                    EXPECT_TRUE(play() == expected) << round;
            });
    for (std::thread& thread : threads)
        thread.join();
}

TEST_P(HostInstancesThreads, StatesAndValuesComeWhileBlocksPlay)
{
    ModuleUnderTest module(GetParam());
    module.Start(0.0, 1.0);
    std::atomic<bool> isDone = false;
    std::thread audio(
        [&]
        {
            while (!isDone)
                EXPECT_LE(FindPeak(module.PlayLeft(100)), 1.01f);
        });
    const auto state = module->SaveState();
    for (int round = 0; round < 50; ++round)
    {
        SetAll(module, round / 49.0);
        EXPECT_NE(module->SaveState(), state);
        EXPECT_THROW(module->LoadState({}), MException);
        module->LoadState(state);
    }
    isDone = true;
    audio.join();
    EXPECT_TRUE(module->SaveState() == state);
    EXPECT_NEAR(FindPeak(module.PlayLeft(Length)), 1.0f, 1e-3f);
}

/// Of this process. One that has been joined may take a moment to go, if more than @p expected.
std::ptrdiff_t CountThreads(std::ptrdiff_t expected)
{
    std::ptrdiff_t count = 0;
    for (int i = 0; i < 1000; ++i)
    {
        count = std::distance(std::filesystem::directory_iterator("/proc/self/task"),
                              std::filesystem::directory_iterator());
        if (count <= expected)
            break;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return count;
}

/// Whether anything of the file or bundle at @p path is in this process.
bool IsMapped(const std::string& path)
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find(path) != std::string::npos)
            return true;
    return false;
}

TEST_P(HostInstances, LeaveNothingOfTheModuleBehind)
{
    std::thread([] {}).join(); // with the first one, a sanitizer starts its own
    const std::ptrdiff_t threads = CountThreads(1);
    for (int load = 0; load < 3; ++load)
    {
        {
            ModuleUnderTest first(GetParam());
            ModuleUnderTest second(GetParam());
            for (ModuleUnderTest* const instance : {&first, &second})
            {
                instance->Start(0.0, 1.0);
                instance->PlayLeft(Length);
                // Whatever other threads keep of the module is gone with them.
                std::thread([&] { instance->PlayLeft(Length); }).join();
            }
            first->LoadState(second->SaveState());
            EXPECT_TRUE(IsMapped(GetParam()));
        }
        EXPECT_FALSE(IsMapped(GetParam()));
        EXPECT_LE(CountThreads(threads), threads);
    }
}

} // namespace
