#include "effect/TonvaleAudioEffectPluginInterface.h"

#include <gtest/gtest.h>

#include "effect/MPluginInfo.h"

namespace
{

std::intptr_t Call(void* instance, int command, std::intptr_t a0 = 0, std::intptr_t a1 = 0)
{
    const MPluginCommandArguments arguments(a0, a1);
    return TonvaleAudioEffectPluginInterface(instance, command, &arguments);
}

class EntryTest : public ::testing::Test
{
protected:
    void TearDown() override { EXPECT_EQ(Call(plugin, 1), 0); }

    void* plugin = reinterpret_cast<void*>(Call(nullptr, 0));
};

TEST_F(EntryTest, CommandSevenIsAnsweredByTheEntryAlone)
{
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(Call(plugin, 7), reinterpret_cast<std::intptr_t>(plugin));
    int notAPlugin = 0; // would not survive a call on it
    EXPECT_EQ(Call(&notAPlugin, 7), reinterpret_cast<std::intptr_t>(&notAPlugin));

    void* const other = reinterpret_cast<void*>(Call(nullptr, 7));
    EXPECT_NE(other, nullptr);
    EXPECT_NE(other, plugin);
    EXPECT_EQ(Call(other, 1), 0);
}

TEST_F(EntryTest, EachCommandAnswersAsTold)
{
    struct Case
    {
        int command;
        std::intptr_t a0, a1, expected;
    };
    double amount = 1.0;
    const Case Cases[] = {
        {3, 0, 0, 0},
        {4, -1, 0, 0},
        {4, 8, 0, 0},
        {4, 0, 0, 0},
        {5, 0, 0, 0},
        {6, 0, 0, 0},
        {11, 0, 0, 0},
        {12, 0, 0, 0},
        {13, 0, 0, 0},
        {14, 9, 0, -1},
        {15, 0, 0, 0},
        {20, 1, 2, -1},
        {100, 2, 44100, 0},
        {101, 0, 0, 0},
        {102, 0, 0, 1},
        {103, 0, 0, 0},
        {104, 1, 0, 0},
        {105, 0, 0, -1},
        {106, 0, 0, 0},
        {107, 0, 0, 0},
        {8, 0, 0, -1},
        {99, 0, 0, -1},
        {108, 0, 0, -1},
        {-1, 0, 0, -1},
        {15, reinterpret_cast<std::intptr_t>(&amount), 0, 0},
    };
    for (const Case& row : Cases)
        EXPECT_EQ(Call(plugin, row.command, row.a0, row.a1), row.expected) << row.command;
    EXPECT_EQ(TonvaleAudioEffectPluginInterface(plugin, 101, nullptr), 0) << "no arguments";
    EXPECT_EQ(reinterpret_cast<MPluginInfo*>(Call(plugin, 2))->parameterCount, 8);
    EXPECT_EQ(Call(nullptr, 1), 0) << "creates and destroys";
}

} // namespace
