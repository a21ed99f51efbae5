#include <cmath>

#include <gtest/gtest.h>

#include "host/MAudioPlugin.h"
#include "host/vst3/MAudioPluginVST3Adapter.h"
#include "host/vst3/Vst3Text.h"
#include "tests/host/vst3/FakeVst3Host.h"

using namespace Vst3;
using fakehost::Instance;

namespace
{

TEST(VST3Controller, EachParameterIsWhatValidatorsWant)
{
    const Instance instance;
    instance.Start();
    const std::int32_t count = instance.controller->getParameterCount();
    ASSERT_GT(count, 1);
    for (std::int32_t i = 0; i < count; ++i)
    {
        ParameterInfo info;
        std::memset(&info, 0xAA, sizeof(info));
        ASSERT_EQ(instance.controller->getParameterInfo(i, info), kResultTrue);
        const bool isBypass = i == count - 1;
        EXPECT_EQ(info.id, isBypass ? 0x7FFFu : static_cast<ParamID>(i));
        EXPECT_EQ(info.flags, isBypass ? 0x10001 : 1);
        EXPECT_NE(info.title[0], 0);
        EXPECT_EQ(info.unitId, 0);
        EXPECT_TRUE(info.defaultNormalizedValue >= 0.0 && info.defaultNormalizedValue <= 1.0);
        // Hosts get back what they set, however the plugin rounds it.
        for (const double value : {0.0, 0.3337, 0.5, 0.77, 1.0})
        {
            EXPECT_EQ(instance.controller->setParamNormalized(info.id, value), kResultTrue);
            EXPECT_EQ(instance.controller->getParamNormalized(info.id), value) << i;
        }
    }
    ParameterInfo info{};
    EXPECT_NE(instance.controller->getParameterInfo(count, info), kResultOk);
    EXPECT_NE(instance.controller->getParameterInfo(-1, info), kResultOk);
}

/// A text leads to a value that has the same text, but for kHz: the effect reads Hz alone.
TEST(VST3Controller, TextsComeBack)
{
    const Instance instance;
    instance.Start();
    const auto last = static_cast<ParamID>(instance.controller->getParameterCount() - 1);
    for (ParamID place = 0; place <= last; ++place)
        for (int step = 1; step < 40; ++step)
        {
            const ParamID id = place < last ? place : 0x7FFF;
            String128 text;
            String128 again;
            double value = -1.0;
            ASSERT_EQ(instance.controller->getParamStringByValue(id, step / 40.0, text),
                      kResultTrue);
            EXPECT_NE(text[0], 0);
            ASSERT_EQ(instance.controller->getParamValueByString(id, text, value), kResultTrue);
            EXPECT_EQ(instance.controller->getParamStringByValue(id, value, again), kResultTrue);
            const std::string shown = ReadText(text).ToUTF8();
            const std::string shownAgain = ReadText(again).ToUTF8();
            EXPECT_TRUE(shownAgain == shown || (id == 7 && shown.ends_with("kHz")))
                << "parameter " << id << " at " << step;
        }
}

TEST(VST3Controller, UnknownIdsAndBadNumbersDoNothing)
{
    const Instance instance;
    instance.Start();
    IEditController& controller = *instance.controller;
    const auto behind = static_cast<ParamID>(controller.getParameterCount() - 1);
    for (const ParamID id : {behind, ParamID{0x7FFE}, ParamID{0x80000000}, ParamID{0xFFFFFFFF}})
    {
        String128 text{};
        double value = 0.25;
        EXPECT_EQ(controller.setParamNormalized(id, 1.0), kResultFalse) << id;
        EXPECT_EQ(controller.getParamNormalized(id), 0.0) << id;
        EXPECT_EQ(controller.getParamStringByValue(id, 0.5, text), kResultFalse) << id;
        EXPECT_EQ(controller.getParamValueByString(id, text, value), kResultFalse) << id;
        EXPECT_EQ(controller.normalizedParamToPlain(id, 0.3), 0.3) << id;
    }
    controller.setParamNormalized(1, 0.25);
    for (const double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL})
        controller.setParamNormalized(1, bad);
    EXPECT_EQ(controller.getParamNormalized(1), 0.25);
    controller.setParamNormalized(1, 1.5);
    EXPECT_EQ(controller.getParamNormalized(1), 1.0);
    EXPECT_EQ(controller.normalizedParamToPlain(0x7FFF, 0.7), 1.0);
}

TEST(VST3Controller, EditsAreGesturesWhoseEchoIsLeftOut)
{
    std::unique_ptr<MAudioPlugin> owned = CreateAudioPlugin();
    MAudioPlugin& plugin = *owned;
    auto* const adapter = new MAudioPluginVST3Adapter(std::move(owned));
    adapter->initialize(nullptr);
    fakehost::Handler handler;
    handler.echo = adapter;
    plugin.SendBypassAutomation(true); // no one listens yet
    adapter->setComponentHandler(&handler);
    plugin.SetParameter(1, 0.25, false);
    adapter->SendAutomation(1, 0.25);
    EXPECT_EQ(plugin.GetParameter(1), 0.25);
    adapter->SendAutomation(-1, 0.5);
    adapter->SendAutomation(plugin.GetParameterCount(), 0.5);
    plugin.SendBypassAutomation(false);
    EXPECT_EQ(handler.log, "begin 1;perform 1;end 1;begin 32767;perform 32767;end 32767;");
    EXPECT_FALSE(plugin.IsBypassed());
    EXPECT_FALSE(adapter->IgnoresHostParameters());

    handler.log.clear();
    adapter->LatencyChanged();
    EXPECT_EQ(handler.log, "restart 8;");
    handler.echo = nullptr;
    adapter->release();
    EXPECT_EQ(handler.references, 0u);
}

} // namespace
