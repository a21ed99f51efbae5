#include "foundation/values/MValueChoice.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <span>

#include <gtest/gtest.h>

#include "foundation/strings/MStringList.h"
#include "foundation/values/MThreadPriorityNames.h"
#include "foundation/values/MValueEnum.h"
#include "foundation/values/MValueList.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

enum class Season : std::uint8_t
{
    Spring,
    Summer,
    Autumn,
    Winter,
    Carnival
};

} // namespace

template <>
struct MEnumNames<Season>
{
    static constexpr const char* Names[] = {"Spring", "Summer", "Autumn", "Winter", "Carnival"};
};

namespace
{

using LiteralList = MValueList<const char*, std::span<const char* const>>;
using StringList = MValueList<MString, const MStringList&, int>;

MStringList Seasons()
{
    MStringList names;
    for (const char* const name : MEnumNames<Season>::Names)
        names.Add(name);
    return names;
}

/// The same five names in the three forms.
class MValueChoiceOfAll : public testing::Test
{
protected:
    const MStringList names = Seasons();
    MValueEnum<Season> asEnum;
    LiteralList asLiterals{MEnumNames<Season>::Names};
    StringList asStrings{names};
    MValueChoice* const forms[3] = {&asEnum, &asLiterals, &asStrings};
};

TEST_F(MValueChoiceOfAll, TheFirstAndTheLastNameAreTheEndsOfTheRange)
{
    struct Case
    {
        double position;
        const char* name;
        double back;
    };
    constexpr Case Cases[] = {{0.0, "Spring", 0.0}, {0.12, "Spring", 0.0},  {0.13, "Summer", 0.25},
                              {0.5, "Autumn", 0.5}, {1.0, "Carnival", 1.0}, {9e9, "Carnival", 1.0},
                              {-7.0, "Spring", 0.0}};
    for (MValueChoice* const value : forms)
    {
        for (const Case& row : Cases)
        {
            EXPECT_EQ(value->GetContentFrom01(row.position).text.ToUTF8(), row.name);
            value->Set01(row.position);
            EXPECT_EQ(value->GetText().ToUTF8(), row.name);
            EXPECT_EQ(value->Get01(), row.back);
        }
        EXPECT_FALSE(value->Set01(std::nan("")));
        EXPECT_EQ(value->GetItemCount(), 5);
        EXPECT_EQ(value->GetItemContent(3).text.ToUTF8(), "Winter");
        EXPECT_TRUE(value->SetItem(2));
        EXPECT_EQ(value->GetAsString().ToUTF8(), "2");
    }
}

TEST_F(MValueChoiceOfAll, StepsByWholeNames)
{
    for (MValueChoice* const value : forms)
    {
        EXPECT_TRUE(value->Step(3));
        EXPECT_EQ(value->GetText().ToUTF8(), "Winter");
        EXPECT_TRUE(value->StepScaled(-1, 10.0)) << "steps have no size";
        EXPECT_EQ(value->GetText().ToUTF8(), "Autumn");
        EXPECT_TRUE(value->Step(std::numeric_limits<int>::max()));
        EXPECT_EQ(value->GetText().ToUTF8(), "Carnival");
        EXPECT_FALSE(value->Step(1));
        EXPECT_TRUE(value->SetDefault());
        EXPECT_EQ(value->GetText().ToUTF8(), "Spring");
    }
}

TEST_F(MValueChoiceOfAll, ReadsNamesInAnyCaseAndTakesTheFirstForUnknownOnes)
{
    for (MValueChoice* const value : forms)
    {
        EXPECT_TRUE(value->SetText("wINTER"));
        EXPECT_EQ(value->GetText().ToUTF8(), "Winter");
        EXPECT_FALSE(value->SetText("Winter"));
        EXPECT_TRUE(value->SetText("Wint"));
        EXPECT_EQ(value->GetText().ToUTF8(), "Spring");
    }
}

TEST_F(MValueChoiceOfAll, StoresTheIndexAndIsDefinedByNames)
{
    for (MValueChoice* const value : forms)
    {
        MXMLItem item("value");
        item.SetAttribute("id", MString("season"));
        item.SetAttribute("value", MString("autumn"));
        value->InitFromXML(item);
        EXPECT_EQ(value->GetText().ToUTF8(), "Autumn");
        EXPECT_EQ(value->GetDefaultIndex(), 2);
        item.SetAttribute("default", MString("Winter"));
        value->InitFromXML(item);
        EXPECT_EQ(value->GetText().ToUTF8(), "Autumn");
        EXPECT_EQ(value->GetDefaultIndex(), 3);

        value->Store(item);
        EXPECT_EQ(item.GetAttribute("season", "").ToUTF8(), "2");
        value->Step(1);
        value->Load(item);
        EXPECT_EQ(value->GetText().ToUTF8(), "Autumn");
        item.SetAttribute("season", MString("Winter"));
        value->Load(item);
        EXPECT_EQ(value->GetText().ToUTF8(), "Autumn") << "no number";
        item.RemoveAttribute("season");
        value->Load(item);
        EXPECT_EQ(value->GetText().ToUTF8(), "Winter");

        MXMLItem unknown("value");
        unknown.SetAttribute("default", MString("Easter"));
        value->InitFromXML(unknown);
        EXPECT_EQ(value->GetDefaultIndex(), 0);

        for (const char* const hostile : {"-1", "99999999999", "-9223372036854775808"})
        {
            item.SetAttribute("season", MString(hostile));
            value->ClearChanged();
            value->Load(item);
            EXPECT_TRUE(value->IsChanged());
            value->GetText();
            value->Limit();
            EXPECT_FALSE(value->GetText().IsEmpty()) << hostile;
        }
    }
}

TEST(MValueEnum, BindsToAnEnumeration)
{
    auto season = Season::Winter;
    MValueEnum<Season> value(&season);
    EXPECT_EQ(value.GetDefault(), Season::Winter);
    value.Set01(0.0);
    EXPECT_EQ(season, Season::Spring);
    season = static_cast<Season>(200);
    EXPECT_EQ(value.GetText().ToUTF8(), "") << "whatever others write";
    value.Limit();
    EXPECT_EQ(season, Season::Carnival);
}

TEST(MValueList, FollowsTheListThatItRefersTo)
{
    MStringList names;
    int index = 3;
    StringList value(names, &index);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(value.GetText().ToUTF8(), "");
    EXPECT_EQ(value.GetContentFrom01(1.0).text.ToUTF8(), "");
    EXPECT_FALSE(value.Step(1));
    EXPECT_FALSE(value.SetText("one"));
    EXPECT_EQ(value.GetItemCount(), 0);

    names = {"one"};
    EXPECT_EQ(value.GetItemContent(0).text.ToUTF8(), "one");
    EXPECT_TRUE(std::isnan(value.Get01())) << "one name has no place";
    names.Add("two");
    names.Add("TWO");
    EXPECT_TRUE(value.SetText("TWO"));
    EXPECT_EQ(index, 1) << "the first of equal names";
    names = {"one"};
    EXPECT_EQ(value.GetText().ToUTF8(), "");
}

TEST(MNameTable, FindsEachNameInAnyCase)
{
    // Of long names only few characters count for the hash, so that these share a bucket.
    constexpr const char* Names[] = {"a name of 20 letters", "a name of 20 figures", "", "x",
                                     "a name of 20 LETTERS"};
    const MNameTable table(Names);
    EXPECT_EQ(table.Find("A NAME OF 20 LETTERS"), 0);
    EXPECT_EQ(table.Find("a name of 20 figures"), 1);
    EXPECT_EQ(table.Find(""), 2);
    EXPECT_EQ(table.Find("X"), 3);
    EXPECT_EQ(table.Find("y"), -1);
}

TEST(MValueEnum, KnowsThePrioritiesOfThreads)
{
    MValueEnum<MThread::Priority> value;
    EXPECT_TRUE(value.SetText("highest"));
    EXPECT_EQ(value.Get(), MThread::Priority::Highest);
    EXPECT_EQ(value.GetDisplayText().ToUTF8(), "Highest");
    EXPECT_EQ(value.GetItemCount(), 7);
}

} // namespace
