#include "effect/MPlugin.h"

#include <future>
#include <string>

#include <gtest/gtest.h>

#include "effect/MAudioEffectPlugin.h"
#include "effect/MPluginHost.h"
#include "effect/MPluginParameterRecord.h"
#include "foundation/threads/MLockGuard.h"
#include "foundation/values/MRandom.h"
#include "foundation/xml/MStorageDescriptor.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

/// Publishes one record of each stored type and writes down what it is called with.
class ProbePlugin final : public MAudioEffectPlugin
{
public:
    explicit ProbePlugin(bool isIndirect = false)
    {
        using enum MParameterType;
        records[0].SetFloat("Level", -1.0, 1.0, 0.5);
        records[1].SetInt("Count", -10, 10, 3);
        records[1].flags = records[1].flags & ~MPluginParameterRecord::Recalculate;
        records[2].type = Enum;
        records[2].key = "Mode";
        records[2].range.asEnum = {modes, 3, 1, 1, false};
        records[3].type = Bool;
        records[3].key = "Switch";
        records[3].range.asBool = {true, true};
        records[4].type = BoolElsewhere;
        records[4].key = "Byte";
        records[4].range.elsewhere = &byte;
        records[5].type = Text;
        records[5].key = "Label";
        for (std::size_t i = 0; i < 6; ++i)
            pointers[i] = &records[i];
        info.parameters = isIndirect ? nullptr : records;
        info.parameterCount = isIndirect ? 0 : 6;
        info.parameterPointers = isIndirect ? pointers : nullptr;
        info.parameterPointerCount = isIndirect ? 6 : 0;
        if (isIndirect)
            info.flags |= MPluginInfo::IndirectParameters;
    }
    ~ProbePlugin() override
    {
        if (isGone != nullptr)
            *isGone = true;
    }

    void ParameterChanged(std::int32_t index) override
    {
        log += "changed" + std::to_string(index) + ' ';
    }
    void Update() override { log += "update "; }
    void LoadFinished() override { log += "finished "; }
    void StoreExtras(const MStorageDescriptor& storage) override
    {
        log += storage.storing ? "storing " : "loading ";
    }
    std::int32_t InitProcessing(std::int32_t channels, std::int32_t rate) override
    {
        log += "init" + std::to_string(channels) + '/' + std::to_string(rate) + ' ';
        return 42;
    }
    void Process(MProcessingContext*, const float* const*, float* const*, std::int32_t) override {}
    using MPlugin::CallHost;

    std::intptr_t Call(MPluginCommand command, std::intptr_t a0 = 0, std::intptr_t a1 = 0)
    {
        const MPluginCommandArguments arguments(a0, a1);
        return Dispatch(static_cast<std::int32_t>(command), &arguments);
    }

    static constexpr const char* modes[] = {"Slow", "Normal", "Fast"};
    MPluginParameterRecord records[6];
    MPluginParameterRecord* pointers[6] = {};
    std::uint8_t byte = 0;
    std::string log;
    std::atomic<bool>* isGone = nullptr;
};

TEST(MPlugin, AChangeUpdatesOnlyWhereTheRecordAsksForIt)
{
    ProbePlugin plugin;
    for (const auto& [index, expected] : {std::pair{0, "changed0 update "},
                                          {1, "changed1 "},
                                          {6, "changed6 update "},
                                          {-1, "changed-1 update "}})
    {
        plugin.log.clear();
        plugin.Call(MPluginCommand::ParameterChanged, index);
        EXPECT_EQ(plugin.log, expected);
    }
}

TEST(MPlugin, InitProcessingUpdatesAndLeavesNoRamp)
{
    ProbePlugin plugin;
    plugin.records[0].range.asFloat.value = 0.25;
    EXPECT_EQ(plugin.Call(MPluginCommand::InitProcessing, 2, 44100), 42);
    EXPECT_EQ(plugin.log, "init2/44100 update ");
    EXPECT_EQ(plugin.records[0].range.asFloat.rampStart, 0.25);
}

TEST(MPlugin, EveryStoredTypeComesBack)
{
    for (const bool isIndirect : {false, true})
    {
        MXMLItem item("state");
        ProbePlugin source(isIndirect);
        source.records[0].range.asFloat.value = -0.75;
        source.records[1].range.asInt.value = -7;
        source.records[2].range.asEnum.value = 2;
        source.records[3].range.asBool.value = false;
        source.byte = 1;
        source.records[5].text = "note";
        EXPECT_TRUE(source.Store(item));
        EXPECT_EQ(source.log, "storing ");
        EXPECT_EQ(item.GetAttribute("parameterModeEnum", "").ToUTF8(), "Fast");

        ProbePlugin target(isIndirect);
        EXPECT_TRUE(target.Load(item));
        EXPECT_EQ(target.log, "loading finished update ");
        EXPECT_EQ(target.records[0].range.asFloat.value, -0.75);
        EXPECT_EQ(target.records[0].range.asFloat.rampStart, -0.75);
        EXPECT_EQ(target.records[1].range.asInt.value, -7);
        EXPECT_EQ(target.records[2].range.asEnum.value, 2);
        EXPECT_TRUE(target.records[2].range.asEnum.loadedByName);
        EXPECT_FALSE(target.records[3].range.asBool.value);
        EXPECT_EQ(target.byte, 1);
        EXPECT_EQ(target.records[5].text.ToUTF8(), "note");
    }
}

TEST(MPlugin, LoadingLimitsAndFallsBackToDefaults)
{
    ProbePlugin plugin;
    const auto load = [&plugin](const char* key, const char* value)
    {
        MXMLItem item("state");
        if (key != nullptr)
            item.SetAttribute(key, MString(value));
        plugin.Load(item);
    };
    plugin.records[0].range.asFloat.value = -0.9;
    plugin.records[1].range.asInt.value = 9;
    load(nullptr, nullptr);
    EXPECT_EQ(plugin.records[0].range.asFloat.value, 0.5);
    EXPECT_EQ(plugin.records[1].range.asInt.value, 3);
    EXPECT_EQ(plugin.records[2].range.asEnum.value, 1);
    EXPECT_FALSE(plugin.records[2].range.asEnum.loadedByName);
    EXPECT_TRUE(plugin.records[3].range.asBool.value);

    load("parameterLevel", "7");
    EXPECT_EQ(plugin.records[0].range.asFloat.value, 1.0);
    load("parameterLevel", "x");
    EXPECT_EQ(plugin.records[0].range.asFloat.value, 0.0) << "no number reads as 0";
    load("parameterCount", "99999999999");
    EXPECT_EQ(plugin.records[1].range.asInt.value, 10);
    load("parameterMode", "2");
    EXPECT_EQ(plugin.records[2].range.asEnum.value, 2) << "a number, from before the names";
    load("parameterMode", "-4");
    EXPECT_EQ(plugin.records[2].range.asEnum.value, 0);
    load("parameterModeEnum", "no such");
    EXPECT_EQ(plugin.records[2].range.asEnum.value, 1);

    MXMLItem both("state");
    both.SetAttribute("parameterMode", 0);
    both.SetAttribute("parameterModeEnum", "fast");
    plugin.Load(both);
    EXPECT_EQ(plugin.records[2].range.asEnum.value, 2) << "the name goes before the number";
}

TEST(MPlugin, RandomSettingsStayInRangeAndPassOverTheRest)
{
    ProbePlugin plugin;
    plugin.records[1].flags = plugin.records[1].flags & ~MPluginParameterRecord::Randomisable;
    MRandom::SetState(0);
    plugin.GenerateRandomSettings(0.1);
    // The first draw is 38: 0.5 + 0.2 * (2 * 38 / 32767 - 1).
    EXPECT_NEAR(plugin.records[0].range.asFloat.value, 0.5 + 0.2 * (76.0 / 32767.0 - 1.0), 1e-12);
    EXPECT_EQ(plugin.records[1].range.asInt.value, 3);
    EXPECT_TRUE(plugin.records[3].range.asBool.value) << "switches stay below one half";
    EXPECT_EQ(plugin.log, "update ");

    bool hasSwitched = false;
    for (int i = 0; i < 500; ++i)
    {
        plugin.GenerateRandomSettings(1.0);
        ASSERT_LE(std::abs(plugin.records[0].range.asFloat.value), 1.0);
        ASSERT_GE(plugin.records[2].range.asEnum.value, 0);
        ASSERT_LE(plugin.records[2].range.asEnum.value, 2);
        hasSwitched |= !plugin.records[3].range.asBool.value;
    }
    EXPECT_TRUE(hasSwitched);
}

TEST(MPluginThreads, DestroyWaitsOutACallInProgress)
{
    MLock shared;
    std::atomic<bool> isGone = false;
    auto* const plugin = new ProbePlugin; // command Destroy deletes it
    plugin->SetLock(shared);
    plugin->isGone = &isGone;
    std::future<void> destroyed;
    {
        const MLockGuard block(shared);
        destroyed = std::async(std::launch::async, [=] { plugin->Call(MPluginCommand::Destroy); });
        EXPECT_EQ(destroyed.wait_for(std::chrono::milliseconds(30)), std::future_status::timeout);
        EXPECT_FALSE(isGone);
    }
    destroyed.get();
    EXPECT_TRUE(isGone);
}

TEST(MPlugin, ReachesTheServicesOfItsHost)
{
    class Host : public MPluginHost
    {
    public:
        using MPluginHost::MPluginHost;
        std::intptr_t OnForward(std::intptr_t a0) override { return a0 + 1; }
    };
    Host host(nullptr);
    const auto ask = [&host](int command, std::intptr_t a0)
    {
        const MPluginCommandArguments arguments(a0);
        return MPluginHost::DispatchCall(&host, command, &arguments);
    };
    EXPECT_EQ(ask(0, 5), 6);
    for (int command = 1; command <= 7; ++command)
        EXPECT_EQ(ask(command, 5), 0) << "no service: " << command;
    EXPECT_EQ(ask(8, 5), -1);
    EXPECT_EQ(ask(-1, 5), -1);

    for (int command = 1; command <= 7; ++command)
        host.SetService(static_cast<MPluginHostCommand>(command),
                        [](MPluginHost& asked, std::intptr_t a0)
                        {
                            asked.children[0].tag = a0;
                            return std::intptr_t{77};
                        });
    EXPECT_EQ(ask(6, 5), 77);
    EXPECT_EQ(host.children[0].tag, 0) << "passes nothing";
    EXPECT_EQ(ask(3, 5), 0);
    EXPECT_EQ(host.children[0].tag, 5);

    ProbePlugin plugin;
    EXPECT_EQ(plugin.CallHost(MPluginHostCommand::GetSampleRate), 0) << "alone";
    plugin.SetHost(&host, &MPluginHost::DispatchCall);
    EXPECT_EQ(plugin.CallHost(MPluginHostCommand::GetSampleRate), 77);
}

} // namespace
