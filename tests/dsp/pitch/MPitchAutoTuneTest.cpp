#include "dsp/pitch/MPitchAutoTune.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

namespace
{

constexpr std::uint32_t CMajor = 0b1010'1011'0101;
constexpr double Hop = 512.0 / 24000.0; ///< seconds

double Tuned(MPitchAutoTune& tune, double note, double seconds = Hop)
{
    return MPitchScale::NoteOf(tune.Process(MPitchScale::FrequencyOf(note), seconds));
}

TEST(MPitchScale, FindsTheNearestOfItsNotes)
{
    struct Case
    {
        std::uint32_t mask;
        double note;
        int nearest;
    };
    constexpr Case Cases[] = {{0xFFF, 60.49, 60},  {0xFFF, 60.51, 61}, {0xFFF, -0.6, -1},
                              {CMajor, 61.0, 60},  {CMajor, 61.1, 62}, {CMajor, -1.9, -1},
                              {1, 65.9, 60},       {1, 66.1, 72},      {1, -7.0, -12},
                              {1 << 11, 60.0, 59}, {0, 61.2, 61},      {0x1000, 61.2, 61}};
    for (const Case& row : Cases)
        EXPECT_EQ(MPitchScale(row.mask).Nearest(row.note), row.nearest)
            << row.note << " in " << row.mask;
    EXPECT_DOUBLE_EQ(MPitchScale::NoteOf(880.0), 81.0);
    EXPECT_NEAR(MPitchScale::FrequencyOf(60.0), 261.6256, 1e-4);
}

TEST(MPitchAutoTune, ClosesTheGapExponentially)
{
    struct Case
    {
        double speed;
        double depth;
        double seconds; ///< time constant
    };
    const Case cases[] = {{0.0, 1.0, 0.5},
                          {0.5, 1.0, 0.5 * std::sqrt(0.002)},
                          {1.0, 0.5, 1e-3},
                          {0.25, 0.5, 0.5 * std::pow(0.002, 0.25)}};
    for (const Case& row : cases)
    {
        MPitchAutoTune tune;
        tune.SetSpeed(row.speed);
        tune.SetDepth(row.depth);
        for (int hop = 1; hop <= 30; ++hop)
            EXPECT_NEAR(Tuned(tune, 57.3),
                        57.3 - row.depth * 0.3 * (1.0 - std::exp(-hop * Hop / row.seconds)), 1e-9)
                << row.speed << ", hop " << hop;
    }
}

TEST(MPitchAutoTune, StaysAtANoteUntilAnotherIsNearerByATenth)
{
    MPitchAutoTune tune;
    tune.SetDepth(1.0);
    const auto follow = [&](double note, double expected)
    { EXPECT_NEAR(Tuned(tune, note, 1e9), expected, 1e-9) << note; };
    follow(60.51, 61.0); // no note to stay at
    follow(60.46, 61.0);
    follow(60.44, 60.0);
    follow(60.54, 60.0);
    follow(60.56, 61.0);
    follow(48.3, 48.0);
    tune.SetScale(MPitchScale(CMajor));
    follow(61.06, 62.0);
    follow(60.96, 62.0);
    tune.SetScale(MPitchScale(1)); // the note that it stayed at is gone
    follow(61.06, 60.0);
    tune.Reset();
    follow(66.04, 72.0);
}

TEST(MPitchAutoTune, StartsOverAfterWhatHasNoPitch)
{
    MPitchAutoTune tune;
    const double first = Tuned(tune, 57.3);
    for (const double none : {0.0, -1.0, std::numeric_limits<double>::infinity()})
    {
        EXPECT_NE(Tuned(tune, 57.3), first);
        EXPECT_EQ(tune.Process(none, Hop), none);
        EXPECT_EQ(Tuned(tune, 57.3), first);
    }
}

} // namespace
