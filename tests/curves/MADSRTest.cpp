#include "curves/MADSR.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "curves/StepPattern.h"
#include "foundation/limits.h"
#include "foundation/threads/MException.h"
#include "foundation/threads/MLock.h"
#include "tests/foundation/xml/Trees.h"

namespace
{

/// At 1000 Hz: a delay of 10 samples, then 100, 20 and 50 to the sustain at 180, which is left at
/// 230 for a release of 200. All stages are lines.
MADSR Stages()
{
    MADSR adsr;
    adsr.Delay = 0.01;
    adsr.Attack = 0.1;
    adsr.Hold = 0.02;
    adsr.Decay = 0.05;
    adsr.Sustain = 0.5;
    adsr.Release = 0.2;
    adsr.SetSampleRate(1000.0);
    return adsr;
}

struct Switch
{
    int step; ///< before which it happens
    bool isOn;
    double value = 0.0; ///< start or delay
};

struct NoteCase
{
    const char* what;
    std::vector<Switch> switches;
    std::vector<std::pair<int, double>> levels; ///< what some steps return
    void (*change)(MADSR& adsr) = [](MADSR&) {};
    double width = 1.0; ///< samples a step
};

std::vector<double> Play(MADSR& adsr, const NoteCase& note)
{
    std::vector<double> levels;
    MADSRState state;
    for (int step = 0; step <= note.levels.back().first; ++step)
    {
        for (const Switch& change : note.switches)
            if (change.step == step && change.isOn)
                adsr.NoteOn(state, change.value);
            else if (change.step == step)
                adsr.NoteOff(state, change.value);
        levels.push_back(adsr.Advance(state, note.width));
    }
    return levels;
}

const NoteCase NoteCases[] = {
    {"no note", {{5, false}}, {{0, 0.0}, {9, 0.0}}},
    {"held",
     {{0, true}},
     {{0, 0.0}, {10, 0.0}, {60, 0.5}, {110, 1.0}, {130, 1.0}, {155, 0.75}, {180, 0.5}, {999, 0.5}}},
    {"released", {{0, true}, {300, false}}, {{300, 0.5}, {301, 0.5}, {401, 0.25}, {501, 0.0}}},
    {"released in the attack",
     {{0, true}, {50, false}},
     {{60, 0.5}, {110, 1.0}, {180, 0.5}, {181, 0.5}, {281, 0.25}, {400, 0.0}}},
    {"released with a delay", {{0, true}, {300, false, 5.0}}, {{306, 0.5}, {406, 0.25}}},
    {"the way to the sustain counts", {{0, true}, {160, false, 30.0}}, {{191, 0.5}, {291, 0.25}}},
    {"again in the attack", {{0, true}, {60, true}}, {{60, 0.5}, {61, 0.51}, {110, 1.0}}},
    {"again at full level", {{0, true}, {120, true}}, {{130, 1.0}, {155, 0.75}}},
    {"again at the sustain", {{0, true}, {300, true}}, {{300, 0.5}, {350, 1.0}, {420, 0.5}}},
    {"again in the release, and held",
     {{0, true}, {300, false}, {401, true}},
     {{401, 0.25}, {426, 0.5}, {476, 1.0}, {900, 0.5}}},
    {"again behind the end",
     {{0, true}, {300, false}, {600, true, 60.0}},
     {{599, 0.0}, {600, 0.5}, {650, 1.0}}},
    {"in blocks, of which the delay counts one a step",
     {{0, true}, {75, false, 5.0}},
     {{15, 0.5}, {45, 0.5}, {81, 0.5}, {106, 0.25}},
     [](MADSR&) {},
     4.0},
    {"a shape counts as a line when notes come again",
     {{0, true}, {300, true}},
     {{60, 0.71875}, {299, 0.5}, {300, 0.71875}},
     [](MADSR& adsr) { adsr.AttackShape = 0.5; }},
    {"no attack",
     {{0, true}},
     {{0, 1.0}, {20, 1.0}, {45, 0.75}},
     [](MADSR& adsr) { adsr.Delay = adsr.Attack = 0.0; }},
    {"no release",
     {{0, true}, {300, false}},
     {{300, 0.5}, {301, 0.0}},
     [](MADSR& adsr) { adsr.Release = 0.0; }},
    {"full sustain",
     {{0, true}, {300, false}},
     {{110, 1.0}, {155, 1.0}, {300, 1.0}, {401, 0.5}},
     [](MADSR& adsr) { adsr.Sustain = 1.0; }},
    {"nothing but sustain",
     {{0, true}, {30, false}},
     {{0, 0.5}, {30, 0.5}, {31, 0.0}},
     [](MADSR& adsr) { adsr.Delay = adsr.Attack = adsr.Hold = adsr.Decay = adsr.Release = 0.0; }},
    {"drawn lines",
     {{0, true}, {300, false}, {401, true}},
     {{50, 0.5}, {100, 1.0}, {300, 1.0}, {301, 1.0}, {400, 0.505}, {401, 0.5}, {451, 1.0}},
     [](MADSR& adsr) { adsr.CustomShape = true; }},
    {"a drawn release joins the attack",
     {{0, true}, {300, false}},
     {{50, 0.4}, {100, 0.8}, {301, 0.8}, {401, 0.4}, {501, 0.0}},
     [](MADSR& adsr)
     {
         adsr.CustomShape = true;
         adsr.EnvelopeAttack.GetPoints()[1].Y = 0.8;
         adsr.EnvelopeRelease.GetPoints()[0].Y = 0.5;
     }},
    {"a drawn release that would leave the box",
     {{0, true}, {300, false}},
     {{301, 0.8}, {401, 0.9}, {501, 1.0}},
     [](MADSR& adsr)
     {
         adsr.CustomShape = true;
         adsr.EnvelopeAttack.GetPoints()[1].Y = 0.8;
         adsr.EnvelopeRelease.GetPoints()[0].Y = 0.2;
         adsr.EnvelopeRelease.GetPoints()[1].Y = 1.0;
     }},
    {"a drawn release from zero",
     {{0, true}, {300, false}},
     {{300, 1.0}, {301, 0.0}, {401, 0.3}, {501, 0.6}},
     [](MADSR& adsr)
     {
         adsr.CustomShape = true;
         adsr.EnvelopeRelease.GetPoints()[0].Y = 0.0;
         adsr.EnvelopeRelease.GetPoints()[1].Y = 0.6;
     }},
    {"drawn steps of no length",
     {{0, true}, {30, false}},
     {{0, 0.8}, {30, 0.8}, {31, 0.4}, {99, 0.4}},
     [](MADSR& adsr)
     {
         adsr.CustomShape = true;
         adsr.Attack = adsr.Release = 0.0;
         MakeCurveFromSteps(adsr.EnvelopeAttack, std::vector{0.25f, 0.5f, 0.8f});
         MakeCurveFromSteps(adsr.EnvelopeRelease, std::vector{0.5f, 0.75f, 0.25f});
     }},
};

TEST(MADSR, PlaysNotes)
{
    for (const NoteCase& row : NoteCases)
    {
        MADSR adsr = Stages();
        row.change(adsr);
        adsr.Rebuild();
        const std::vector<double> levels = Play(adsr, row);
        for (const auto& [step, level] : row.levels)
            EXPECT_NEAR(levels[static_cast<std::size_t>(step)], level, 1e-6)
                << row.what << ", step " << step;
    }
    MADSRState ended{.X = 430.0};
    Stages().NoteOff(ended, 3.0);
    EXPECT_EQ(ended.ReleaseCountdown, MADSRState::Held);
}

double LevelAt(MADSR& adsr, double x)
{
    MADSRState state{.X = x};
    return adsr.Advance(state, 1.0);
}

/// What Mode2 makes of the way from 0 to 1.
double Bend(double curvature, double u)
{
    if (curvature < 0.0)
        return 1.0 - Bend(-curvature, 1.0 - u);
    return curvature * u * u * u * u + (1.0 - curvature) * u;
}

TEST(MADSR, BendsTheAttackAgainstItsShapeAndTheOthersAlongTheirs)
{
    MADSR adsr = Stages();
    for (const double shape : {-1.0, -0.3, 0.0, 0.6, 1.0})
        for (const double delay : {0.0, 0.01})
        {
            adsr.Delay = delay;
            adsr.AttackShape = shape;
            adsr.DecayShape = shape / 2.0;
            adsr.ReleaseShape = -shape;
            adsr.Rebuild();
            const double start = delay * 1000.0;
            for (const double u : {0.1, 0.5, 0.9})
            {
                EXPECT_NEAR(LevelAt(adsr, start + 100.0 * u), Bend(-shape, u), 1e-9);
                EXPECT_NEAR(LevelAt(adsr, start + 120.0 + 50.0 * u),
                            1.0 - 0.5 * Bend(shape / 2.0, u), 1e-9);
                EXPECT_NEAR(LevelAt(adsr, start + 220.0 + 200.0 * u), 0.5 - 0.5 * Bend(-shape, u),
                            1e-9);
            }
        }
}

TEST(MADSR, SmoothsTheJointsUpToTheSustainAlone)
{
    MADSR adsr = Stages();
    constexpr double Tiny = 1e-4; // samples
    for (const double smoothing : {0.0, 0.2, 0.9})
    {
        adsr.Smoothing = smoothing;
        adsr.Rebuild();
        const auto kink = [&adsr](double x)
        {
            const double middle = LevelAt(adsr, x);
            return std::abs(LevelAt(adsr, x + Tiny) - 2.0 * middle + LevelAt(adsr, x - Tiny)) /
                   Tiny;
        };
        for (const double joint : {10.0, 110.0, 130.0, 180.0})
            EXPECT_EQ(kink(joint) < 1e-4, smoothing > 0.0) << joint << ' ' << smoothing;
        // Each side of a joint reaches towards its own neighbour, and the sustain is flat.
        EXPECT_EQ(std::abs(LevelAt(adsr, 70.0) - 0.6) > 1e-6, smoothing > 0.8);
        EXPECT_NEAR(LevelAt(adsr, 180.0), 0.5, 1e-12);
        for (const double corner : {230.0, 430.0}) // 0.5 in 200 samples
            EXPECT_NEAR(kink(corner), 0.0025, 1e-6) << corner << ' ' << smoothing;
    }
}

/// The fields of each stage within @p most seconds, and drawn curves that rise and fall.
void Randomise(MADSR& adsr, std::mt19937& random, double most)
{
    const auto draw = [&random](double min, double max)
    { return std::uniform_real_distribution(min, max)(random); };
    for (double* const seconds :
         {&adsr.Delay, &adsr.Attack, &adsr.Hold, &adsr.Decay, &adsr.Release})
        *seconds = random() % 4 == 0 ? 0.0 : draw(0.0, most);
    for (double* const shape : {&adsr.AttackShape, &adsr.DecayShape, &adsr.ReleaseShape})
        *shape = draw(-1.0, 1.0);
    adsr.Sustain = random() % 4 == 0 ? 1.0 : draw(0.0, 1.0);
    adsr.Smoothing = draw(0.01, 1.0);
    adsr.CustomShape = random() % 3 == 0;
    adsr.EnvelopeAttack.GetPoints().resize(1);
    for (const double x : {0.25, 0.5, 1.0})
        adsr.EnvelopeAttack.Add(x, x * draw(0.9, 1.0)).Curvature = draw(-1.0, 1.0);
    adsr.EnvelopeRelease.GetPoints()[0].Curvature = draw(-1.0, 1.0);
}

TEST(MADSR, ComesBackToTheAttackAtItsLevel)
{
    std::mt19937 random(2);
    MADSR adsr;
    for (int run = 0; run < 2000; ++run)
    {
        Randomise(adsr, random, 0.5);
        if (run % 4 == 0)
            adsr.Smoothing = adsr.AttackShape = 0.0;
        adsr.Rebuild();
        const double share = std::uniform_real_distribution(0.0, 1.0)(random);
        MADSRState state{.X = adsr.HoldEnd + share * (adsr.TotalEnd - adsr.HoldEnd)};
        const double before = LevelAt(adsr, state.X);
        adsr.NoteOn(state, -1.0);
        ASSERT_GE(state.X, adsr.DelayEnd);
        ASSERT_LE(state.X, adsr.AttackEnd);
        if (adsr.AttackEnd == adsr.DelayEnd)
            continue; // a step has no levels to come back at
        // Smoothing may take the ends of the attack away.
        const double top = std::nextafter(adsr.AttackEnd, 0.0);
        EXPECT_NEAR(LevelAt(adsr, state.X),
                    std::clamp(before, LevelAt(adsr, adsr.DelayEnd), LevelAt(adsr, top)), 2e-5)
            << run;
    }
}

TEST(MADSR, StaysFiniteAtAnyRateAndLength)
{
    std::mt19937 random(3);
    for (const double rate : {0.0, 1e-3, 44100.0, 6.144e6, -1.0, std::nan("")})
        for (const double most : {1e-9, 0.01, MADSR::MaxSeconds})
            for (int run = 0; run < 50; ++run)
            {
                MADSR adsr;
                Randomise(adsr, random, most);
                adsr.SetSampleRate(rate);
                ASSERT_GE(adsr.TotalEnd, 0.0);
                MADSRState state;
                for (int step = 0; step < 200; ++step)
                {
                    if (step % 60 == 0)
                        adsr.NoteOn(state, 0.0);
                    if (step % 60 == 30)
                        adsr.NoteOff(state, 3.0);
                    const double level = adsr.Advance(state, adsr.TotalEnd / 97.0 + 1e-3);
                    ASSERT_GT(level, -0.01) << rate << ' ' << most << ' ' << run;
                    ASSERT_LT(level, 1.01) << rate << ' ' << most << ' ' << run;
                }
            }
}

TEST(MADSR, StoresWhatItsFormUses)
{
    MADSR adsr = Stages();
    MXMLItem item("ADSR");
    item.SetAttribute("Delay", 9.0);
    adsr.CustomShape = true;
    adsr.EnvelopeRelease.Clear();
    adsr.Store(item);
    EXPECT_EQ(Outline(item),
              "ADSR Attack=[0.100000000000] CustomShape=[1] Release=[0.200000000000]"
              "{EnvelopeAttack{Point Flags=[13] SmoothingType=[Mode 1] Type=[Mode 2],"
              "Point Flags=[13] SmoothingType=[Mode 1] Type=[Mode 2] x=[1.000000000000] "
              "y=[1.000000000000]},EnvelopeRelease}");
    MADSR loaded;
    loaded.Load(item);
    EXPECT_TRUE(loaded.CustomShape);
    EXPECT_EQ(loaded.EnvelopeAttack.GetCount(), 2u);
    EXPECT_EQ(loaded.EnvelopeRelease.GetCount(), 0u);
    EXPECT_EQ(loaded.Delay, 0.0);
    EXPECT_EQ(loaded.AttackEnd, 4410.0); // rebuilt

    adsr.CustomShape = false;
    adsr.AttackShape = -0.25;
    adsr.Store(item);
    const std::string stored =
        "ADSR Attack=[0.100000000000] AttackShape=[-0.250000000000] Decay=[0.050000000000] "
        "DecayShape=[0.000000000000] Delay=[0.010000000000] Hold=[0.020000000000] "
        "Release=[0.200000000000] ReleaseShape=[0.000000000000] Smoothing=[0.000000000000] "
        "Sustain=[0.500000000000]";
    EXPECT_EQ(Outline(item), stored);
    loaded.Load(item);
    EXPECT_FALSE(loaded.CustomShape);
    loaded.Store(item);
    EXPECT_EQ(Outline(item), stored);
}

TEST(MADSR, LoadsFromStrangersWithinBoundsOrNotAtAll)
{
    MADSR adsr = Stages();
    MXMLItem item("ADSR");
    constexpr std::pair<const char*, const char*> Attributes[] = {
        {"Delay", "-1"},       {"Attack", "1e9"},   {"Hold", "nan"},    {"Decay", ""},
        {"AttackShape", "-2"}, {"DecayShape", "2"}, {"Sustain", "1.5"}, {"Smoothing", "-3"},
    };
    for (const auto& [key, value] : Attributes)
        item.SetAttribute(key, MString(value));
    adsr.Load(item);
    MXMLItem stored("ADSR");
    adsr.Store(stored);
    EXPECT_EQ(Outline(stored),
              "ADSR Attack=[3600.000000000000] AttackShape=[-1.000000000000] "
              "Decay=[0.000000000000] DecayShape=[1.000000000000] Delay=[0.000000000000] "
              "Hold=[0.000000000000] Release=[0.200000000000] ReleaseShape=[0.000000000000] "
              "Smoothing=[0.000000000000] Sustain=[1.000000000000]");

    MXMLItem& release = item.AddSubItem("EnvelopeRelease");
    for (int i = 0; i <= limits::CurvePoints; ++i)
        release.AddSubItem("Point");
    item.AddSubItem("EnvelopeAttack");
    item.SetAttribute("Attack", 1.0);
    EXPECT_THROW(adsr.Load(item), MException);
    EXPECT_EQ(adsr.Attack, MADSR::MaxSeconds);
    EXPECT_EQ(adsr.EnvelopeAttack.GetCount(), 2u);
}

TEST(MADSR, RebuildsUnderTheLock)
{
    class CountingLock : public MLock
    {
    public:
        int Lock(int timeout) noexcept override { return ++taken, MLock::Lock(timeout); }
        void Unlock() noexcept override { ++given, MLock::Unlock(); }
        int taken = 0;
        int given = 0;
    } lock;
    MADSR adsr(&lock);
    EXPECT_EQ(lock.taken, 1);
    adsr.SetSampleRate(96000.0);
    EXPECT_EQ(lock.taken, 2);
    MXMLItem item("ADSR");
    adsr.Load(item);
    EXPECT_GE(lock.taken, 3);
    EXPECT_EQ(lock.given, lock.taken);
}

} // namespace
