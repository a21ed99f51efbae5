#include "host/HostTransport.h"

#include <limits>

#include <gtest/gtest.h>

#include "tests/host/AutomationUnderTest.h"

namespace
{

TEST(HostTransport, TellsStartsStopsAndJumps)
{
    struct Step
    {
        const char* name;
        double position;
        bool isPlaying;
        bool hasChanged;
        bool hasJumped;
    };
    constexpr Step Steps[] = {
        {"stands", 0.0, false, false, false},
        {"starts at once", 0.0, true, true, false},
        {"two quarters on are no jump", 2.0, true, false, false},
        {"more are", 4.0625, true, false, true},
        {"back by as much as that, too", 0.0, true, false, true},
        {"stops", 0.0, false, true, false},
        {"is moved while it stands", 100.0, false, false, false},
        {"and starts there", 100.0, true, true, true},
    };
    SilentPlugin plugin;
    HostTransport transport;
    for (const Step& step : Steps)
    {
        SCOPED_TRACE(step.name);
        transport.Tell(plugin, {.position = step.position, .isPlaying = step.isPlaying});
        const MAudioPluginTime& time = plugin.GetTime();
        EXPECT_EQ(time.position, step.position);
        EXPECT_EQ(time.playing, step.isPlaying);
        EXPECT_EQ(time.transportChanged, step.hasChanged);
        EXPECT_EQ(time.transportJumped, step.hasJumped);
    }
}

TEST(HostTransport, RoundsTheStartOfABarToItsUnit)
{
    struct Case
    {
        const char* name;
        int denominator;
        double told;
        double expected;
    };
    constexpr Case Cases[] = {
        {"quarters", 4, 7.9999, 8.0},
        {"quarters, half up", 4, 7.5, 8.0},
        {"eighths", 8, 10.26, 10.5},
        {"halves count as quarters", 2, 3.4, 3.0},
        {"twelfths are three to a quarter", 12, 1.3, 4.0 / 3.0},
        {"before the start", 4, -3.9, -4.0},
    };
    for (const Case& row : Cases)
    {
        SCOPED_TRACE(row.name);
        SilentPlugin plugin;
        HostTransport().Tell(plugin, {.barStart = row.told, .signature = {{3, row.denominator}}});
        EXPECT_DOUBLE_EQ(plugin.GetTime().barStart, row.expected);
    }
}

TEST(HostTransport, KeepsWhatIsNotToldOrMakesNoSense)
{
    constexpr double NoNumber = std::numeric_limits<double>::quiet_NaN();
    SilentPlugin plugin;
    HostTransport transport;
    transport.Tell(plugin, {.position = 8.0,
                            .tempo = 90.0,
                            .barStart = 8.0,
                            .signature = {{3, 4}},
                            .loop = {{4.0, 12.0}},
                            .isPlaying = true});
    EXPECT_EQ(plugin.GetTime().loopEnd, 12.0);
    // An event half a second on is three quarters of a quarter later.
    EXPECT_DOUBLE_EQ(plugin.GetEventTime(22050), 8.75);

    transport.Tell(plugin, {.position = NoNumber,
                            .tempo = -1.0,
                            .barStart = NoNumber,
                            .signature = {{4, 0}},
                            .loop = {{4.0, 4.0}},
                            .isPlaying = true});
    const MAudioPluginTime& time = plugin.GetTime();
    EXPECT_EQ(time.position, 8.0);
    EXPECT_EQ(time.tempo, 90.0);
    EXPECT_EQ(time.barStart, 8.0);
    EXPECT_EQ(time.timeSigNumerator, 3);
    EXPECT_EQ(time.loopStart, -1.0);
    EXPECT_EQ(time.loopEnd, -1.0);
    EXPECT_FALSE(time.transportJumped);
}

} // namespace
