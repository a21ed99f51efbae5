#include "host/MAudioPlugin.h"

#include <limits>

#include <gtest/gtest.h>

#include "foundation/threads/MSemaphore.h"
#include "host/MAudioPluginAdapter.h"
#include "tests/host/AutomationUnderTest.h"

namespace
{

/// A host standard that keeps what it is told.
class Host final : public MAudioPluginAdapter
{
public:
    virtual ~Host() = default;

    void SendAutomation(int index, double value01) override { sent.emplace_back(index, value01); }
    void SendBypassAutomation(bool) override {}
    void GenerateMIDIEvent(int, const std::uint8_t*) override {}
    bool ChangeEditorSize(int width, int) override { return width < 500; }
    bool IgnoresHostParameters() const noexcept override { return isIgnoring; }

    std::vector<std::pair<int, double>> sent;
    bool isIgnoring = false;
};

TEST(MAudioPlugin, LayoutsComeIntoForceWithInitProcessing)
{
    struct Case
    {
        const char* what;
        int inputBuses, busChannels; ///< what the plugin has
        int inputs, outputs;         ///< what the host wants
        bool isPossible;
        int inputBusesInUse, channelsPerBus, inputChannels, outputChannels;
    };
    constexpr Case Cases[] = {
        {"stereo", 1, 2, 2, 2, true, 1, 2, 2, 2},
        {"mono", 1, 2, 1, 1, true, 1, 2, 1, 1},
        {"mono to stereo", 1, 2, 1, 2, true, 1, 2, 2, 2},
        {"sidechain", 2, 2, 2, 2, true, 2, 2, 2, 2},
        {"no inputs wanted", 1, 2, 0, 2, true, 0, 2, 0, 2},
        {"no input bus", 0, 2, 2, 1, true, 0, 2, 0, 1},
        {"part of the widest", 1, 8, 6, 6, true, 1, 8, 6, 6},
        {"more than stereo", 2, 2, 8, 8, true, 2, 8, 8, 8},
        {"too many", 1, 2, 9, 2, false, 1, 2, 2, 2},
        {"too many outputs", 1, 2, 2, 9, false, 1, 2, 2, 2},
        {"no outputs", 1, 2, 2, 0, false, 1, 2, 2, 2},
        {"negative", 1, 2, -1, 2, false, 1, 2, 2, 2},
    };
    for (const Case& row : Cases)
    {
        SilentPlugin plugin;
        plugin.SetBuses(row.inputBuses, 1, row.busChannels);
        EXPECT_EQ(plugin.SetChannels(row.inputs, row.outputs), row.isPossible) << row.what;
        EXPECT_EQ(plugin.GetOutputChannels(), row.busChannels) << row.what << ", not yet";
        plugin.InitProcessing();
        EXPECT_EQ(plugin.GetInputBusCount(), row.inputBusesInUse) << row.what;
        EXPECT_EQ(plugin.GetOutputBusCount(), 1) << row.what;
        EXPECT_EQ(plugin.GetChannelsPerBus(), row.channelsPerBus) << row.what;
        EXPECT_EQ(plugin.GetInputChannels(), row.inputChannels) << row.what;
        EXPECT_EQ(plugin.GetEffectInputChannels(), row.inputChannels) << row.what;
        EXPECT_EQ(plugin.GetOutputChannels(), row.outputChannels) << row.what;
        EXPECT_EQ(plugin.GetInputChannelName(9),
                  MString(row.inputBusesInUse > 1 ? "Sidechain 1" : ""))
            << row.what;
        EXPECT_EQ(plugin.GetInputChannelName(0), MString(row.inputBusesInUse > 0 ? "In 0" : ""))
            << row.what;
        plugin.SetChannels(1, 1);
        plugin.InitProcessing();
        plugin.SetChannels(2, 2); // the way back is open
        plugin.InitProcessing();
        EXPECT_EQ(plugin.GetOutputChannels(), 2) << row.what;
    }
}

TEST(MAudioPlugin, RefusesRatesBeyondTheLimits)
{
    SilentPlugin plugin;
    for (const int rate : {std::numeric_limits<int>::min(), -48000, 0, 100, 6144001,
                           std::numeric_limits<int>::max()})
        EXPECT_FALSE(plugin.SetHostSampleRate(rate)) << rate;
    plugin.InitProcessing();
    EXPECT_EQ(plugin.GetSampleRate(), 44100);
    for (const int rate : {101, 6144000})
    {
        EXPECT_TRUE(plugin.SetHostSampleRate(rate));
        plugin.InitProcessing();
        EXPECT_EQ(plugin.GetHostSampleRate(), rate);
        EXPECT_EQ(plugin.GetSampleRate(), rate);
    }
}

TEST(MAudioPlugin, TakesOnlySaneValuesUnlessTheHostIgnoresThem)
{
    SilentPlugin plugin;
    RowAdapter row(1);
    Host host;
    plugin.AddAdapter(row);
    plugin.SetAdapter(&host);
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    constexpr std::pair<double, double> Cases[] = {{0.25, 0.25},     {-3.0, 0.0}, {Infinity, 0.5},
                                                   {-Infinity, 0.5}, {7.0, 1.0},  {1.0, 1.0}};
    for (const auto& [value, expected] : Cases)
    {
        row.SetParameter(0, 0.5, true);
        plugin.SetParameterFromHostSafely(0, value);
        EXPECT_EQ(row.GetParameter(0), expected) << value;
    }
    plugin.SetParameterFromHostSafely(0, std::numeric_limits<double>::quiet_NaN());
    host.isIgnoring = true;
    plugin.SetParameterFromHostSafely(0, 0.125);
    EXPECT_EQ(row.GetParameter(0), 1.0);
}

TEST(MAudioPlugin, SendsAllValuesOfAnAdapterUnderItsIndices)
{
    SilentPlugin plugin;
    RowAdapter before(5);
    RowAdapter row(2);
    Host host;
    plugin.AddAdapter(before);
    plugin.AddAdapter(row);
    row.SetParameter(1, 0.75, true);
    plugin.SendAllAutomation(row); // to nobody
    EXPECT_FALSE(plugin.ChangeEditorSize(450, 100));
    plugin.SetAdapter(&host);
    plugin.SendAllAutomation(row);
    const std::vector<std::pair<int, double>> expected{{5, 0.0}, {6, 0.75}};
    EXPECT_EQ(host.sent, expected);
    EXPECT_TRUE(plugin.ChangeEditorSize(450, 100));
}

/// Takes part in a refresh as the GUI would.
class Sink final : public MAudioPluginUpdateRequestSink
{
public:
    virtual ~Sink() = default;

    void RequestUpdate(MAudioPlugin& plugin) override
    {
        taken = plugin.TakePendingEditorUpdates().size();
        arrived.Unlock();
    }

    std::size_t taken = 0;
    MSemaphore arrived;
};

TEST(MAudioPluginThreads, PendingUpdatesAreRequestedWhileAnEditorIsOpen)
{
    constexpr int LongMs = 10000;
    SilentPlugin plugin;
    RowAdapter row(1);
    plugin.AddAdapter(row);
    Sink sink;
    MAudioPlugin::SetUpdateRequestSink(&sink);
    for (int opening = 0; opening < 2; ++opening)
    {
        plugin.StartUpdateRequests();
        plugin.NeedUpdateEditor(row);
        ASSERT_EQ(sink.arrived.Lock(LongMs), 0);
        EXPECT_EQ(sink.taken, 1u);
        plugin.StopUpdateRequests();
        plugin.NeedUpdateEditor(row);
        EXPECT_NE(sink.arrived.Lock(250), 0) << "nobody looks any more";
        plugin.TakePendingEditorUpdates();
    }
    plugin.StartUpdateRequests();
    MAudioPlugin::SetUpdateRequestSink(nullptr);
    plugin.NeedUpdateEditor(row);
    EXPECT_NE(sink.arrived.Lock(250), 0);
} // the end of a plugin with an open editor waits for its thread

} // namespace
