#include "effect/parameters/MParameterList.h"

#include <gtest/gtest.h>

#include "ParametersUnderTest.h"
#include "curves/MADSR.h"
#include "effect/MSignalGenerator.h"
#include "effect/parameters/ParameterMainBase.h"
#include "foundation/threads/MException.h"

namespace
{

class ReadyMade final : public MAutomationAdapter
{
public:
    ReadyMade() : MAutomationAdapter(2) { SetTemporary(true); }
    void SetParameter(int /*index*/, double /*value01*/, bool /*quiet*/) override {}
    double GetParameter(int /*index*/) const override { return 0.0; }
};

constexpr MParameterType Types[FakePlugin::Count] = {
    MParameterType::Float, MParameterType::Empty, MParameterType::Int,
    MParameterType::Text,  MParameterType::Bool,  MParameterType::Float,
};

TEST(MParameterList, BuildsAnObjectForEachPublishedRecordAndSpecial)
{
    for (const bool isIndirect : {false, true})
    {
        FakePlugin plugin;
        MSignalGenerator generator;
        MADSR adsr;
        ReadyMade readyMade;
        for (std::size_t i = 0; i < FakePlugin::Count; ++i)
        {
            // The indirect list runs backwards through the table.
            MPluginParameterRecord& record =
                plugin.records[isIndirect ? FakePlugin::Count - 1 - i : i];
            record.type = Types[i];
            record.name = MString::FromInteger(static_cast<int>(i));
            record.tag = static_cast<std::int32_t>(10 + i);
            record.help = "Help";
            if (i >= 2 && i <= 4)
                record.flags = record.flags | MPluginParameterRecord::SectionStart;
            if (i == 5)
                record.flags = record.flags & ~MPluginParameterRecord::Published;
        }
        plugin.specials[0] = {MSpecialKind::ADSR, "Envelope", "Env", &adsr, nullptr, 0};
        plugin.specials[1] = {MSpecialKind::ParameterObject, "Ready", "", &readyMade, nullptr, 0};
        plugin.specials[2] = {MSpecialKind::SignalGenerator, "Shape", "", &generator, nullptr, 7};
        plugin.Publish(isIndirect, FakePlugin::Count, 3);

        MParameterList list;
        for (int wiring = 0; wiring < 2; ++wiring)
        {
            list.Wire(plugin, plugin.owner);
            struct Row
            {
                const char* name;
                int kind, firstIndex, tag;
            };
            constexpr Row Rows[] = {{"0", 1, 0, 10}, {"2", 2, 1, 12},
                                    {"4", 4, 2, 14}, {"Envelope delay", 11, 3, 0},
                                    {"", 0, 14, 0},  {"Shape", 4, 16, 7}};
            ASSERT_EQ(list.GetAdapters().size(), std::size(Rows));
            for (std::size_t i = 0; i < std::size(Rows); ++i)
            {
                MAutomationAdapter& adapter = *list.GetAdapters()[i];
                EXPECT_EQ(adapter.GetParameterName(0).ToUTF8(), Rows[i].name);
                EXPECT_EQ(adapter.GetFirstIndex(), Rows[i].firstIndex);
                EXPECT_EQ(adapter.GetOwner(), &plugin.owner);
                if (const auto* const object = dynamic_cast<ParameterMainBase*>(&adapter))
                {
                    EXPECT_EQ(object->GetKind(), Rows[i].kind);
                    EXPECT_EQ(object->GetTag(), Rows[i].tag);
                    EXPECT_EQ(object->GetHelp().ToUTF8(), i < 3 ? "Help" : "");
                }
            }
        }
        EXPECT_EQ(list.GetAdapters()[3]->GetParameterID(1).ToUTF8(), "Env attack");
        EXPECT_EQ(list.GetAdapters()[5]->GetParameterID(3).ToUTF8(), "Shape smoothness");
        EXPECT_EQ(list.GetAdapters()[4], &readyMade);
        EXPECT_FALSE(readyMade.IsTemporary());
        EXPECT_EQ(list.GetParameterCount(), 20);
        EXPECT_EQ(list.FindAdapter(13), list.GetAdapters()[3]);
        EXPECT_EQ(list.FindAdapter(14), &readyMade);
        EXPECT_EQ(list.FindAdapter(19), list.GetAdapters()[5]);
        EXPECT_EQ(list.FindAdapter(20), nullptr);
        EXPECT_EQ(list.FindAdapter(-1), nullptr);
        EXPECT_EQ(list.GetSectionStarts(), (std::vector<int>{1, 2}));
        EXPECT_TRUE(plugin.SharesLock(plugin.owner.lock));
        list.GetAdapters()[1]->SetModulated(0, false);
        list.GetAdapters()[2]->SetParameter(0, 1.0, false);
        EXPECT_EQ(plugin.owner.log, "changed4 update editor ") << "the index of the record";
    }
}

TEST(MParameterList, RefusesImpossibleTypesAndStaysAsItWas)
{
    FakePlugin good;
    good.records[0].SetFloat("Level", 0.0, 1.0, 0.0);
    good.Publish(false, 1, 0);
    MParameterList list;
    list.Wire(good, good.owner);
    for (const int type : {6, 8, -1})
    {
        FakePlugin bad;
        bad.records[1].type = static_cast<MParameterType>(type);
        bad.Publish(false, 2, 0);
        try
        {
            list.Wire(bad, bad.owner);
            ADD_FAILURE() << type;
        }
        catch (const MException& failure)
        {
            EXPECT_EQ(failure.text.ToUTF8(), "Invalid plugin parameter type.");
        }
        EXPECT_EQ(list.GetParameterCount(), 1);
        EXPECT_FALSE(bad.SharesLock(bad.owner.lock));
    }
}

} // namespace
