#include "shell/multiparameters/MultiParameters.h"

#include <gtest/gtest.h>

#include "tests/shell/PluginUnderTest.h"

namespace
{

constexpr int Dry = 0;
constexpr int Wet = 1;
constexpr int Rate = 48000; // Hz, of PluginUnderTest

/// The first slot drives "Wet" over its whole range, and glides for a second.
class MultiParameterUnderTest
{
public:
    explicit MultiParameterUnderTest(MMultiParameterMode mode = MMultiParameterMode::Normal)
    {
        slot.Enabled = true;
        slot.Mode = static_cast<std::int32_t>(mode);
        slot.Value = 0.0;
        Aim(0, Wet, {.value = 0.0, .mode = MTargetRange::Mode::Interval});
    }

    void Aim(std::size_t target, int parameter, const MTargetRange& range)
    {
        slot.EditTargets(
            [&](MMultiParameter::TargetList& list)
            {
                list.resize(std::max(list.size(), target + 1));
                list[target].Assign(parameter, *plugin);
                list[target].Range = range;
            });
    }
    /// Seconds, a multiple of 10 ms.
    void Play(double seconds)
    {
        for (int left = static_cast<int>(std::lround(seconds * Rate)); left > 0; left -= 480)
            plugin.Play(480);
    }
    double GetWet() const { return plugin->GetParameter(Wet); }

    PluginUnderTest plugin;
    MMultiParameter& slot = plugin->GetMultiParameters()[0];
};

TEST(MMultiParameter, IsAParameterThatMovesOthers)
{
    MultiParameterUnderTest test;
    const int knob = test.slot.GetFirstIndex();
    EXPECT_EQ(knob, 112) << "behind the modulators"; // hosts keep it
    EXPECT_EQ(test.plugin->GetParameterName(knob), "MultiParameter 1");
    EXPECT_EQ(test.plugin->GetParameterName(knob + 3), "MultiParameter 4");
    // Down from 0.8, and compressed round 0.5.
    test.Aim(1, Dry, {.value = 0.8, .maxValue = 0.2, .mode = MTargetRange::Mode::Interval});
    for (const double value : {0.0, 0.25, 1.0, 0.5})
    {
        test.plugin->SetParameter(knob, value, false);
        EXPECT_NEAR(test.GetWet(), value, 1e-6);
        EXPECT_NEAR(test.plugin->GetParameter(Dry), 0.8 - 0.6 * value, 1e-6);
    }
    EXPECT_EQ(test.plugin->GetParameterValueName(knob), "50.0%");
    EXPECT_NEAR(test.plugin->ParseParameterValueName(knob, "25%"), 0.25, 1e-12);
    test.slot.ValueMode = static_cast<std::int32_t>(MMultiParameterValueMode::ByFirstParameter);
    EXPECT_EQ(test.plugin->GetParameterValueName(knob), test.plugin->GetParameterValueName(Wet));

    test.slot.Frozen = true;
    test.plugin->SetParameter(knob, 1.0, false);
    EXPECT_NEAR(test.GetWet(), 0.5, 1e-6);
}

TEST(MMultiParameter, MayDriveItselfAndOthersOfItsKind)
{
    MultiParameterUnderTest test;
    MMultiParameter& other = test.plugin->GetMultiParameters()[1];
    test.Aim(1, other.GetFirstIndex(), {.value = 0.0, .mode = MTargetRange::Mode::Interval});
    test.Aim(2, test.slot.GetFirstIndex(), {.value = 0.5, .mode = MTargetRange::Mode::UpOnly});
    other.EditTargets(
        [&](MMultiParameter::TargetList& list)
        {
            list[0].Assign(test.slot.GetFirstIndex(), *test.plugin);
            list[0].Range = {.value = 0.0, .mode = MTargetRange::Mode::Interval};
        });
    other.ValueMode = test.slot.ValueMode =
        static_cast<std::int32_t>(MMultiParameterValueMode::ByFirstParameter);
    test.plugin->SetParameter(test.slot.GetFirstIndex(), 0.3, false);
    EXPECT_NEAR(test.GetWet(), 0.3, 1e-6);
    EXPECT_NEAR(other.GetParameter(0), 0.3, 1e-6);
    EXPECT_EQ(other.GetParameterValueName(0), "30.0%");
}

TEST(MMultiParameter, SwitchGlidesToTheSideOfTheKnobAndTurnsBack)
{
    MultiParameterUnderTest test(MMultiParameterMode::Switch);
    const auto turn = [&](double value)
    { test.plugin->SetParameter(test.slot.GetFirstIndex(), value, false); };
    turn(0.6);
    test.Play(0.3);
    EXPECT_NEAR(test.GetWet(), 0.3, 1e-3);
    EXPECT_EQ(test.slot.GetParameter(0), 1.0) << "the knob snaps";
    turn(0.0);
    test.Play(0.1);
    EXPECT_NEAR(test.GetWet(), 0.2, 1e-3);
    turn(1.0);
    test.Play(0.75);
    EXPECT_NEAR(test.GetWet(), 0.95, 1e-3);
    test.Play(0.2);
    EXPECT_NEAR(test.GetWet(), 1.0, 1e-9);
    EXPECT_FALSE(test.slot.IsMoving());
    test.slot.SwitchTime = 0.0;
    turn(0.0);
    test.Play(0.02);
    EXPECT_NEAR(test.GetWet(), 0.0, 1e-9);
}

TEST(MMultiParameter, TriggerGoesUpAndDownOnce)
{
    MultiParameterUnderTest test(MMultiParameterMode::Trigger);
    const int knob = test.slot.GetFirstIndex();
    test.plugin->SetParameter(knob, 1.0, false);
    test.Play(0.5);
    EXPECT_NEAR(test.GetWet(), 0.5, 1e-3);
    EXPECT_EQ(test.slot.GetParameter(0), 0.0) << "it fires once";
    test.Play(0.8);
    EXPECT_NEAR(test.GetWet(), 0.7, 0.02) << "back from the top";
    test.plugin->SetParameter(knob, 1.0, false); // again in its fall
    test.Play(0.1);
    EXPECT_NEAR(test.GetWet(), 0.8, 0.02);
    test.Play(1.5);
    EXPECT_EQ(test.GetWet(), 0.0);
    EXPECT_FALSE(test.slot.IsMoving());
}

TEST(MMultiParameter, ComesBackWithTheState)
{
    MultiParameterUnderTest test(MMultiParameterMode::Switch);
    test.slot.Name = "Morph <&>";
    test.slot.Group = "g";
    test.slot.Info = "i";
    test.slot.SwitchTime = 2.5;
    test.slot.DefaultValue = 0.25;
    test.Aim(1, Dry, {.value = 0.8, .range = 0.3, .isInverted = true});
    test.plugin->GetMultiParameters()[3].Value = 0.75;
    const auto state = test.plugin.Store();
    const MXMLItem& list = state->GetRequiredSubItem("MultiParameters");
    ASSERT_EQ(list.GetSubItems().size(), 4u);
    EXPECT_EQ(list.GetSubItems()[0]->GetAttribute("Mode", ""), "Switch");
    for (const char* const dropped : {"SwitchTime", "DefaultValue", "Name", "Group", "Info"})
        EXPECT_EQ(list.GetSubItems()[1]->GetAttribute(dropped, "none"), "none") << dropped;

    const PluginUnderTest other;
    other.Load(*state);
    MMultiParameter& slot = other->GetMultiParameters()[0];
    EXPECT_EQ(slot.GetParameterName(0), "Morph <&>");
    EXPECT_EQ(double{slot.SwitchTime}, 2.5);
    EXPECT_EQ(double{other->GetMultiParameters()[3].Value}, 0.75);
    MXMLItem again("MultiParameter");
    slot.Store(again);
    EXPECT_EQ(again.GetSubItems().size(), 2u);
    EXPECT_EQ(again.GetSubItems()[1]->GetAttribute("ParameterName", ""), "Dry");
}

} // namespace
