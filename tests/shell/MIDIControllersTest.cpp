#include "shell/MIDIControllers.h"

#include <gtest/gtest.h>

#include "tests/shell/PluginUnderTest.h"

namespace
{

constexpr int Width = 6;
constexpr int Frequency = 7;
constexpr double Untouched = 0.5; ///< of "Width", its default

TEST(MIDIControllers, BytesMoveTheParameter)
{
    struct Case
    {
        const char* what;
        std::array<int, 3> bytes;
        int channel, controller; ///< of the assignment
        double expected;
    };
    const Case cases[] = {
        {"full", {0xB3, 21, 127}, 0, 21, 1.0},
        {"half", {0xB3, 21, 64}, 0, 21, 64.0 / 127.0},
        {"own channel", {0xB3, 21, 0}, 4, 21, 0.0},
        {"another channel", {0xB3, 21, 0}, 3, 21, Untouched},
        {"another controller", {0xB3, 22, 0}, 0, 21, Untouched},
        {"volume is taken twice", {0xB0, 7, 127}, 0, 7, 1.0},
        {"pressure of the channel", {0xD0, 127, 0}, 0, 128, 1.0},
        {"pressure of a note", {0xA0, 60, 0}, 0, 128, 0.0},
        {"wheel, its centre", {0xE0, 0, 64}, 0, 129, 16384 * 6.103701895199438e-05 / 2.0},
        {"wheel, its low end", {0xE0, 0, 0}, 0, 129, 0.0},
    };
    for (const Case& row : cases)
    {
        const PluginUnderTest plugin;
        MMIDIControllerAssignment& assignment = plugin->GetControllers().assignments[15];
        assignment.parameterIndex = Width;
        assignment.channel = row.channel;
        assignment.controller = row.controller;
        plugin.Send(row.bytes);
        EXPECT_EQ(plugin->GetParameter(Width), Untouched) << row.what << ", disabled";
        assignment.isEnabled = true;
        plugin.Send(row.bytes);
        EXPECT_NEAR(plugin->GetParameter(Width), row.expected, 1e-12) << row.what;
    }
}

TEST(MIDIControllers, LaterAssignmentsWinAndUnknownParametersStayWhole)
{
    const PluginUnderTest plugin;
    auto& rows = plugin->GetControllers().assignments;
    for (const std::size_t i : {2U, 9U, 11U})
    {
        rows[i].isEnabled = true;
        rows[i].parameterIndex = Width;
        rows[i].controller = 30;
    }
    rows[9].target = {.value = 0.25, .maxValue = 0.75, .mode = MTargetRange::Mode::Interval};
    rows[11].parameterIndex = -1; // as of a name that no parameter has
    plugin.Send({0xB0, 30, 127});
    EXPECT_DOUBLE_EQ(plugin->GetParameter(Width), 0.75);
}

TEST(MIDIControllers, NotesSetTheirFrequency)
{
    const PluginUnderTest plugin;
    MMIDINoteController& row = plugin->GetControllers().noteControllers[3];
    row.isEnabled = true;
    row.parameterIndex = Frequency;
    row.channel = 2;
    plugin.Send({0x90, 57, 100}); // on another channel
    EXPECT_EQ(plugin->GetParameter(Frequency), 0.0);
    plugin.Send({0x81, 57, 100}); // no begin
    EXPECT_EQ(plugin->GetParameter(Frequency), 0.0);
    plugin.Send({0x91, 57, 100});
    EXPECT_NEAR(plugin->GetParameter(Frequency), std::log10(440.0 / 20.0) / 3.0, 1e-12);
    plugin.Send({0xE1, 0, 127});
    const double semitones = 127 * 256 * 6.103701895199438e-05 - 1.0;
    plugin.Send({0x91, 69, 100});
    EXPECT_NEAR(plugin->GetParameter(Frequency),
                std::log10(880.0 * std::exp2(semitones / 12.0) / 20.0) / 3.0, 1e-12);

    row.isLogarithmic = false;
    EXPECT_NEAR(row.Map(57, 0.0), (440.0 - 20.0) / 19980.0, 1e-12);
    EXPECT_LT(row.Map(0, 0.0), 0.0) << "notes below 20 Hz are not limited";
}

TEST(MIDIControllers, LearnDropsTheOldest)
{
    const PluginUnderTest plugin;
    MIDIControllers& controllers = plugin->GetControllers();
    MIDIControllers::Source source{};
    EXPECT_FALSE(controllers.TakeSource(source));
    for (int i = 0; i < 300; ++i)
        plugin.Send({0xB0 + i % 16, i % 120, 0});
    plugin.Send({0xD5, 1, 0});
    for (int i = 300 + 1 - 256; i < 300; ++i)
    {
        ASSERT_TRUE(controllers.TakeSource(source));
        ASSERT_EQ(source.channel, i % 16 + 1);
        ASSERT_EQ(source.number, i % 120);
    }
    ASSERT_TRUE(controllers.TakeSource(source));
    EXPECT_EQ(source.channel, 6);
    EXPECT_EQ(source.number, MMIDIControllerAssignment::Pressure);
    EXPECT_FALSE(controllers.TakeSource(source));
}

TEST(MIDIControllers, RowsLearnTheLastSourceOfTheirKind)
{
    const PluginUnderTest plugin;
    MIDIControllers& controllers = plugin->GetControllers();
    MMIDIControllerAssignment& row = controllers.assignments[15];
    MMIDINoteController& noteRow = controllers.noteControllers[3];
    EXPECT_FALSE(controllers.LearnController(15));
    for (const auto& event : {std::array{0xB0, 7, 1}, {0xB4, 20, 1}, {0x93, 60, 1}, {0x84, 60, 1}})
        plugin.Send(event);
    EXPECT_TRUE(controllers.LearnController(15));
    EXPECT_EQ(row.channel, 5);
    EXPECT_EQ(row.controller, 20);
    EXPECT_FALSE(controllers.LearnNoteChannel(3)) << "all have been taken";
    plugin.Send({0x97, 60, 1});
    plugin.Send({0xE1, 0, 64});
    EXPECT_TRUE(controllers.LearnNoteChannel(3));
    EXPECT_EQ(noteRow.channel, 8);
    plugin.Send({0xE1, 0, 64});
    EXPECT_FALSE(controllers.LearnController(16));

    controllers.AssignController(15, Width);
    controllers.AssignNoteController(3, 999);
    MXMLItem settings("settings");
    controllers.Store(settings);
    controllers.Load(settings);
    EXPECT_EQ(row.parameterIndex, Width) << "by its name";
    EXPECT_EQ(noteRow.parameterName, MString());
}

TEST(MIDIControllers, LoadTakesWhatIsThere)
{
    const PluginUnderTest plugin;
    MXMLItem settings("settings");
    MXMLItem& list = settings.AddSubItem("Controllers");
    for (const char* const number : {"3", "-2", "99999"}) // of an older state, by order alone
    {
        MXMLItem& row = list.AddSubItem("Controller");
        for (const char* const key :
             {"Enabled", "Channel", "Controller", "FullRange", "Value", "Range"})
            row.SetAttribute(key, number);
        row.SetAttribute("ParameterName", "Width");
    }
    MXMLItem& unknown = settings.AddSubItem("NoteControllers").AddSubItem("NoteController2");
    unknown.SetAttribute("ParameterName", "Of another version");
    MIDIControllers& controllers = plugin->GetControllers();
    controllers.Load(settings);

    const auto& rows = controllers.assignments;
    EXPECT_EQ(rows[0].controller, 3);
    EXPECT_EQ(rows[0].parameterIndex, Width);
    EXPECT_EQ(rows[0].target.mode, MTargetRange::Mode::DownOnly);
    EXPECT_EQ(rows[0].target.value, 1.0);
    EXPECT_EQ(rows[1].channel, 0);
    EXPECT_EQ(rows[1].target.range, 0.0);
    EXPECT_EQ(rows[2].channel, 16);
    EXPECT_EQ(rows[2].controller, MMIDIControllerAssignment::PitchBend);
    EXPECT_FALSE(rows[3].isEnabled);
    EXPECT_EQ(rows[3].controller, 1);
    EXPECT_EQ(rows[3].target.mode, MTargetRange::Mode::UpOnly);
    EXPECT_EQ(controllers.noteControllers[2].parameterIndex, -1);
    EXPECT_TRUE(controllers.noteControllers[2].isLogarithmic);

    MXMLItem stored("settings");
    controllers.Store(stored);
    EXPECT_EQ(stored.GetRequiredSubItem("Controllers").GetSubItems().size(), 16U);
    const MXMLItem& storedUnknown =
        stored.GetRequiredSubItem("NoteControllers").GetRequiredSubItem("NoteController2");
    EXPECT_EQ(storedUnknown.GetRequiredAttribute("ParameterName"), "Of another version");
}

} // namespace
