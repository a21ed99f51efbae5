#include "shell/modulators/MModulator.h"

#include <cmath>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "tests/shell/modulators/ModulatorUnderTest.h"

namespace
{

/// How far @p phase is from @p cycles, round the circle.
double PhaseError(double phase, double cycles)
{
    return std::abs(std::remainder(phase - cycles, 1.0));
}

TEST(MModulator, PhaseKeepsInStepWithTempoAndSong)
{
    ModulatorUnderTest test;
    test->Frequency = 1.0;
    test->HiSpeed = true;
    EXPECT_NEAR(test.Play(1200), 0.0, 1e-6); // the value is that of the start
    EXPECT_NEAR(test.Play(0), 1.0, 1e-6) << "a quarter of a cycle at 10 Hz";
    EXPECT_NEAR(test.Play(1200), 1.0, 1e-6) << "no samples, no step";

    test->Phase = 0.0;
    test->Sync.Enabled = true;
    test.time.tempo = 133.0;
    const int blocks = 450000; // ten minutes while the host stands
    for (int block = 0; block < blocks; ++block)
        test.Play(64);
    EXPECT_LT(PhaseError(test->Phase, 64.0 * blocks / 48000.0 * 133.0 / 60.0), 1e-6);

    for (const auto& [name, quarters] :
         std::initializer_list<std::pair<const char*, double>>{{"8/1", 32.0},
                                                               {"1/4", 1.0},
                                                               {"1/4D", 1.5},
                                                               {"1/4T", 2.0 / 3.0},
                                                               {"1/32T", 1.0 / 12.0}})
    {
        test->Sync.Length = MAudioPluginHostSync::FindLength(name);
        test->Sync.Phase = 0.3;
        test.time.position = 12345.6789;
        test.Play(0);
        EXPECT_LT(PhaseError(test->Phase, 12345.6789 / quarters + 0.3), 1e-8) << name;
        test.time.position = 0.0;
        test->Phase = 0.0;
        test.Play(4096);
        EXPECT_LT(PhaseError(test->Phase, 4096 / 48000.0 * 133.0 / 60.0 / quarters), 1e-12) << name;
    }
    test->MIDIResetEnabled = true; // takes the song's place
    test.time.position = 7.7;
    test->Phase = 0.125;
    test.Play(0);
    EXPECT_EQ(test->Phase, 0.125);
}

TEST(MModulator, NonsenseLeavesEveryModeFinite)
{
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    for (int mode = 0; mode < 5; ++mode)
        for (const double nonsense : {-1e300, 1e300, Infinity, -Infinity, std::nan("")})
        {
            ModulatorUnderTest test(static_cast<MModulatorMode>(mode));
            test->Sync.Enabled = true;
            test->Envelope.EnvelopeSource = 1;
            test.time = {.position = nonsense, .tempo = nonsense, .playing = true};
            test.Fill(1, static_cast<float>(nonsense));
            test.PlayFor(200);
            EXPECT_LE(std::abs(test.PlayFor(200)), 1.0) << mode << ", " << nonsense;
            test.time = {.position = 1.0, .tempo = 120.0, .playing = true};
            test.Fill(1, 0.5f);
            const double before = test.PlayFor(4800);
            EXPECT_LE(std::abs(before), 1.0) << mode << ", after " << nonsense;
            EXPECT_TRUE(mode != 1 || before > 0.0) << "the follower hears again";
        }
}

TEST(MModulator, NotesResetThePhase)
{
    struct Case
    {
        const char* what;
        int wanted, channel;
        double velocity;
        bool on, isReset;
    };
    constexpr Case Cases[] = {
        {"any channel", 0, 9, 0.5, true, true},      {"its channel", 10, 9, 0.5, true, true},
        {"another channel", 9, 9, 0.5, true, false}, {"note off", 0, 9, 0.5, false, false},
        {"least velocity", 0, 0, 0.25, true, true},  {"most velocity", 0, 0, 0.75, true, true},
        {"too soft", 0, 0, 0.2499, true, false},     {"too loud", 0, 0, 0.7501, true, false},
    };
    ModulatorUnderTest test;
    test->MinVelocity = 0.25;
    test->MaxVelocity = 0.75;
    test->ResetPhase = 0.6;
    for (const Case& row : Cases)
    {
        test->Phase = 0.1;
        test->Channel = row.wanted;
        test->MIDIResetEnabled = false;
        test->OnNote(row.channel, row.velocity, row.on);
        EXPECT_EQ(test->Phase, 0.1) << row.what << ", disabled";
        test->MIDIResetEnabled = true;
        test->OnNote(row.channel, row.velocity, row.on);
        EXPECT_EQ(test->Phase, row.isReset ? 0.6 : 0.1) << row.what;
    }
}

TEST(MModulator, TargetsShareTheFirstRangeAndBendTheValue)
{
    ModulatorUnderTest test;
    test.Target(1, 1);
    test->EditTargets(
        [](MModulator::TargetList& list)
        {
            list[0].Range = {.value = 0.2, .maxValue = 0.6, .mode = MTargetRange::Mode::Interval};
            list[1].UseFirstRange = true;
            list[1].Range.isInverted = true;
            list[1].Shape.Clear();
            list[1].Shape.AddEndPoints(0.5, 1.0); // x to 0.5 + x / 2
            list[1].CompileShape();
            list[1].ShapeEnabled = true;
        });
    test->Phase = 0.25; // the top of a sine
    test.Play(0);
    EXPECT_NEAR(test.parameters.row.Heard(0), 0.6, 1e-6);
    EXPECT_NEAR(test.parameters.row.Heard(1), 0.2, 1e-6);
    test->Phase = 0.75; // its low end, which the curve takes to the middle
    test.Play(0);
    EXPECT_NEAR(test.parameters.row.Heard(0), 0.2, 1e-6);
    EXPECT_NEAR(test.parameters.row.Heard(1), 0.4, 1e-6);
    test->EditTargets([](MModulator::TargetList& list) { list[1].ShapeEnabled = false; });
    test.Play(0);
    EXPECT_NEAR(test.parameters.row.Heard(1), 0.6, 1e-6);
    EXPECT_EQ(test.parameters.row.GetParameter(0), 0.0) << "the user's value stays";

    test->RemoveTarget(0);
    EXPECT_THROW(test->RemoveTarget(0), MException);
    test->EditTargets([](MModulator::TargetList& list) { EXPECT_EQ(list.size(), 1U); });
}

TEST(MModulator, HoldsEachParameterUntilTheLastOneGoes)
{
    ModulatorUnderTest test;
    RowAdapter& row = test.parameters.row;
    row.SetParameter(2, 0.3, true);
    MModulator other(test.parameters.counter, test.parameters.plugin.GetProcessingLock());
    other.InitProcessing(48000.0);
    test.Target(1, 2);
    test->Phase = 0.25;
    test.Play(0);
    EXPECT_TRUE(row.IsModulated(0));
    EXPECT_GT(row.GetParameter(2), 0.9) << "has no other value to write to";
    other.EditTargets(
        [&](MModulator::TargetList& list)
        {
            list.resize(2);
            list[0].Assign(0, test.parameters.plugin);
            list[1].Assign(2, test.parameters.plugin); // what it finds is not the user's
        });
    other.Enabled = true;
    EXPECT_TRUE(other.Prepare());
    EXPECT_EQ(test.parameters.switches, 2);

    test.Target(0, 1); // elsewhere, within a block
    test.Play(0);
    EXPECT_TRUE(row.IsModulated(0) && row.IsModulated(1));
    test->EditTargets([](MModulator::TargetList& list) { list[0].ParameterEnabled = false; });
    test.Play(0);
    EXPECT_FALSE(row.IsModulated(1));
    other.EditTargets([](MModulator::TargetList& list) { list.emplace_back(); });
    EXPECT_TRUE(other.Prepare()) << "comes with its backup once more";
    test->Frozen = true;
    EXPECT_FALSE(test->Prepare());
    EXPECT_GT(row.GetParameter(2), 0.9) << "the other one holds it";
    other.Enabled = false;
    EXPECT_FALSE(other.Prepare());
    EXPECT_FALSE(row.IsModulated(0));
    EXPECT_EQ(row.GetParameter(2), 0.3);
    EXPECT_FALSE(other.Prepare());
    EXPECT_EQ(test.parameters.switches, 6) << "each parameter on and off, once";
}

} // namespace
