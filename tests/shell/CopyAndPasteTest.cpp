#include <gtest/gtest.h>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/threads/MException.h"
#include "tests/shell/PluginUnderTest.h"

namespace
{

template <typename Copied>
std::string TextOf(const Copied& copied)
{
    MXMLItem item("item");
    copied.Store(item);
    MMemoryStream text;
    item.Save(text, true, "utf-8");
    text.Seek(0, MStream::FromStart);
    const auto bytes = text.GetData();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST(CopyAndPaste, GoesBetweenThingsOfOneKind)
{
    const PluginUnderTest plugin;
    MModulator& modulator = plugin->GetModulators()[0];
    modulator.Frequency = 0.75;
    modulator.SetMode(MModulatorMode::Random);
    modulator.EditTargets([&](auto& list) { list.resize(3); });
    MMultiParameter& knob = plugin->GetMultiParameters()[2];
    knob.Name = MString::FromUTF16(u"\u00C4 <knob>");
    knob.Value = 0.125;
    knob.EditTargets([&](auto& list) { list[0].Assign(5, *plugin); });

    const PluginUnderTest other;
    MModulator& pastedModulator = other->GetModulators()[1];
    MMultiParameter& pastedKnob = other->GetMultiParameters()[0];
    pastedModulator.Paste(modulator.Copy(), *other);
    pastedKnob.Paste(knob.Copy());
    EXPECT_EQ(TextOf(pastedModulator), TextOf(modulator));
    EXPECT_EQ(TextOf(pastedKnob), TextOf(knob));

    MString cut = modulator.Copy();
    cut = cut.Mid(0, cut.Length() / 2);
    modulator.Frequency = 0.5;
    knob.Value = 0.75;
    const std::string keptModulator = TextOf(pastedModulator);
    const std::string keptKnob = TextOf(pastedKnob);
    for (const MString& text : {MString(), MString("some words"), cut})
    {
        EXPECT_THROW(pastedModulator.Paste(text, *other), MException) << text.ToUTF8();
        EXPECT_THROW(pastedKnob.Paste(text), MException) << text.ToUTF8();
    }
    EXPECT_THROW(pastedModulator.Paste(knob.Copy(), *other), MException);
    EXPECT_THROW(pastedKnob.Paste(modulator.Copy()), MException);
    EXPECT_EQ(TextOf(pastedModulator), keptModulator);
    EXPECT_EQ(TextOf(pastedKnob), keptKnob);
}

} // namespace
