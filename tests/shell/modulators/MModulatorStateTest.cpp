#include <span>
#include <string>

#include <gtest/gtest.h>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/threads/MException.h"
#include "tests/shell/modulators/ModulatorUnderTest.h"

namespace
{

/// All that a modulator keeps of its own, each value another than the default.
constexpr const char* EveryKey = R"xml(<LFO Enabled="1" Frequency="0.25" HiSpeed="1" Mode="Random"
 SideChain="1"><Parameter ParameterName="row2 (Rows)" Value="0.1" MaxValue="0.2" Range="0.3"
 FullRange="4" Invert="1" UseFirstRange="1" ParameterEnabled="0" ShapeEnabled="1" ValueBackup="0.4"/>
<Parameter ParameterName="Of another version" ParameterID="Also.unknown" FullRange="77" Invert="0"
 UseFirstRange="0" ParameterEnabled="1" ShapeEnabled="0"/>
<MIDIReset Enabled="1" MinVelocity="0.1" MaxVelocity="0.9" Phase="0.3" Channel="16"/>
<Envelope Enabled="0" LFOModulation="0.1" Attack="0.2" Release="0.3" Project="1" PhaseShift="0.4"
 IntervalSize="1.5" Maximize="1" FollowerMode="Squared" LevelMin="-60" LevelMax="-6" Threshold="0.5"
 BandPassMin="2" BandPassMax="4" BandPassQ="3"/>
<MIDIEnvelope Attack="0.5" Release="0.6" Delay="0.1" Hold="0.2" Decay="0.3" AttackShape="0.1"
 DecayShape="0.2" ReleaseShape="0.3" Sustain="0.7" Smoothing="0.4"/>
<AudioEnvelope LFOModulation="0.2" Threshold="Audio" ThresholdOn="0.6" ThresholdOff="0.1"
 RMSLength="0.05" Project="1" PhaseShift="0.1" IntervalSize="0.2"/>
<Random LFOModulation="0.3" Speed="-2" Smoothness="0.5" Project="1" PhaseShift="0.2"
 IntervalSize="0.3"/>
<Pitch LFOModulation="0.4" ShiftOctaves="-3" ShiftSemitones="7" ShiftCents="-50" MinFrequency="2"
 MaxFrequency="3" Threshold="0.3" Accuracy="0.6" AutoTuneEnable="1" AutoTuneSpeed="0.1"
 AutoTuneDepth="0.2"/>
<Sync Enabled="1" Length="1/16D" Phase="0.75"/></LFO>)xml";

std::unique_ptr<MXMLItem> Parse(const std::string& text)
{
    MMemoryStream stream = MMemoryStream::Refer(std::as_bytes(std::span(text)));
    auto item = std::make_unique<MXMLItem>("none");
    item->Load(stream);
    return item;
}

std::unique_ptr<MXMLItem> Store(const MModulator& modulator)
{
    auto item = std::make_unique<MXMLItem>("LFO");
    modulator.Store(*item);
    return item;
}

/// Expects all attributes of @p wanted in @p item, as numbers where both are, and among @p item's
/// no others. Subitems come in the same order; @p item may have more of them.
void ExpectHolds(const MXMLItem& item, const MXMLItem& wanted)
{
    EXPECT_EQ(item.GetAttributes().size(), wanted.GetAttributes().size())
        << wanted.GetName().ToUTF8();
    for (const MAttribute& attribute : wanted.GetAttributes())
    {
        const MString* const value = item.FindAttribute(attribute.name);
        ASSERT_NE(value, nullptr) << attribute.name.ToUTF8();
        double number = 0.0;
        const bool isText = attribute.value.CharAt(1) == '/' || !attribute.value.ReadDouble(number);
        if (isText)
            EXPECT_EQ(value->ToUTF8(), attribute.value.ToUTF8());
        else
            EXPECT_EQ(value->ToDouble(), number) << attribute.name.ToUTF8();
    }
    auto place = item.GetSubItems().begin();
    for (const auto& subItem : wanted.GetSubItems())
    {
        while (place != item.GetSubItems().end() && !((*place)->GetName() == subItem->GetName()))
            ++place;
        ASSERT_NE(place, item.GetSubItems().end()) << subItem->GetName().ToUTF8();
        ExpectHolds(**place++, *subItem);
    }
}

TEST(MModulatorState, EveryKeyGoesThereAndBack)
{
    const auto wanted = Parse(EveryKey);
    const ModulatorUnderTest test;
    MXMLItem withoutTarget("LFO");
    test->Load(withoutTarget, test.parameters.plugin);
    const auto cleared = Store(*test);

    test->Load(*wanted, test.parameters.plugin);
    test->Signal.StepDepth = 0.5;
    ExpectHolds(*Store(*test), *wanted);
    test->EditTargets(
        [](const MModulator::TargetList& list)
        {
            ASSERT_EQ(list.size(), 2U);
            EXPECT_EQ(list[0].ParameterIndex, 2);
            EXPECT_EQ(list[1].ParameterIndex, -1);
        });
    EXPECT_TRUE(test->Sync.Enabled);

    test->Load(withoutTarget, test.parameters.plugin);
    ExpectHolds(*Store(*test), *cleared);
    EXPECT_EQ(test->Signal.StepDepth, 0.0);
    EXPECT_FALSE(test->Enabled);
    test->Load(*Store(*test), test.parameters.plugin);
    EXPECT_EQ(test->Follower.BandPassMin, MinLogFrequency) << "else the filters would run";
    EXPECT_EQ(test->Follower.BandPassMax, MaxLogFrequency);
}

TEST(MModulatorState, OldAndHostileDataAreLimited)
{
    struct Case
    {
        const char* text;
        MModulatorMode mode;
    };
    constexpr Case Cases[] = {
        {R"(<LFO><Envelope Enabled="1"/></LFO>)", MModulatorMode::Envelope},
        {R"(<LFO Mode="Normal"><Envelope Enabled="1"/></LFO>)", MModulatorMode::Normal},
        {R"(<LFO Mode="3"/>)", MModulatorMode::Random},
        {R"(<LFO Mode="MIDI envelope"/>)", MModulatorMode::MIDIEnvelope},
        {R"(<LFO Mode="5"/>)", MModulatorMode::Normal},
        {R"(<LFO Mode="Unheard of"/>)", MModulatorMode::Normal},
    };
    const ModulatorUnderTest test;
    for (const Case& row : Cases)
    {
        test->Load(*Parse(row.text), test.parameters.plugin);
        EXPECT_EQ(test->GetMode(), row.mode) << row.text;
    }

    for (const char* const hostile : {"1e300", "-1e300", "nan", "", "99999999999999999999", "1/4"})
    {
        const auto item = Parse(EveryKey);
        const auto spoil = [hostile](auto& self, MXMLItem& spoilt) -> void
        {
            for (const MAttribute& attribute : std::vector(spoilt.GetAttributes()))
                spoilt.SetAttribute(attribute.name, MString(hostile));
            for (const auto& subItem : spoilt.GetSubItems())
                self(self, *subItem);
        };
        spoil(spoil, *item);
        test->Load(*item, test.parameters.plugin);
        test->InitProcessing(48000.0);
        EXPECT_GE(test->Frequency, 0.001);
        EXPECT_LE(test->Frequency, 1.0);
        EXPECT_LE(std::abs(test->Random.Speed), 10.0);
        EXPECT_LT(test->Sync.Phase, 1.0);
        const auto once = Store(*test);
        test->Load(*once, test.parameters.plugin);
        ExpectHolds(*Store(*test), *once);
    }

    const auto crowded = Parse(EveryKey);
    for (int i = 0; i < 4096; ++i)
        crowded->AddSubItem("Parameter");
    const auto before = Store(*test);
    EXPECT_THROW(test->Load(*crowded, test.parameters.plugin), MException);
    ExpectHolds(*Store(*test), *before);
}

/// A parameter that shares its name with another one.
class Twin final : public MAutomationAdapter
{
public:
    explicit Twin(const char* ownID) : MAutomationAdapter(1), id(ownID) {}

    void SetParameter(int, double, bool) override {}
    double GetParameter(int) const override { return 0.25; }
    MString GetParameterName(int) const override { return "Envelope phase"; }
    MString GetParameterID(int) const override { return id; }

private:
    const char* id;
};

TEST(MModulatorState, TwinsAreToldApartByTheirIDs)
{
    Twin first("a");
    Twin second("b");
    RowAdapter row(1);
    SilentPlugin plugin;
    for (MAutomationAdapter* const adapter :
         std::initializer_list<MAutomationAdapter*>{&row, &first, &second})
        plugin.AddAdapter(*adapter);
    MModulatorTarget target;
    MModulatorTarget loaded;
    for (const int index : {0, 1, 2})
    {
        MXMLItem item("Parameter");
        target.Assign(index, plugin);
        target.Store(item);
        EXPECT_EQ(item.HasAttribute("ParameterID"), index > 0);
        loaded.Load(item, plugin);
        EXPECT_EQ(loaded.ParameterIndex, index);
        EXPECT_EQ(loaded.ValueBackup, index == 0 ? 0.0 : 0.25);
    }
    target.Assign(3, plugin);
    EXPECT_EQ(target.ParameterIndex, -1);
}

} // namespace
