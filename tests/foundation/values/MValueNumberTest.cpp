#include "foundation/values/MValueNumber.h"

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "foundation/xml/MXMLItem.h"

namespace
{

using Float = MValueNumber<float, double, false>;
using Int = MValueNumber<std::int32_t, std::int32_t, true>;
using Int16 = MValueNumber<std::int16_t, std::int32_t, true>;
using Int64 = MValueNumber<std::int64_t, std::int64_t, true>;

template <typename Value>
class MValueNumberOfAll : public testing::Test
{
};
using AllNumbers = testing::Types<MValueDouble, Float, Int, Int16, Int64>;
TYPED_TEST_SUITE(MValueNumberOfAll, AllNumbers);

TYPED_TEST(MValueNumberOfAll, IsLimitedByItsOperationsButNotByWhatIsLoaded)
{
    TypeParam value(20, 10, 30);
    value.ClearChanged();
    EXPECT_FALSE(value.Set01(0.5));
    EXPECT_TRUE(value.IsChanged()) << "written, if not changed";
    EXPECT_TRUE(value.Set01(7.0));
    EXPECT_EQ(value.Get(), 30);
    EXPECT_TRUE(value.SetDefault());
    EXPECT_EQ(value.Get(), 20);

    value.SetFromString("99");
    EXPECT_EQ(value.Get(), 99);
    EXPECT_EQ(value.Get01(), 1.0);
    value.Limit();
    EXPECT_EQ(value.Get(), 30);
    value.SetFromString("no number");
    EXPECT_EQ(value.Get(), 0);
    value.ClearChanged();
    value.Limit();
    EXPECT_TRUE(value.IsChanged());
    value.ClearChanged();
    value.Limit();
    EXPECT_FALSE(value.IsChanged());
}

TYPED_TEST(MValueNumberOfAll, ReadsTypedText)
{
    struct Case
    {
        const char* typed;
        bool isChanged;
        int expected;
    };
    constexpr Case Cases[] = {{"25", true, 25},    {"25", false, 25},   {"", false, 25},
                              {"x5", false, 25},   {"-", false, 25},    {"7 dB", true, 7},
                              {"12x", true, 12},   {"-99", true, 0},    {"0", false, 0},
                              {"1000", true, 100}, {"nan", false, 100}, {" 5", false, 100}};
    TypeParam value(0, 0, 100);
    for (const Case& row : Cases)
    {
        EXPECT_EQ(value.SetText(row.typed), row.isChanged) << row.typed;
        EXPECT_EQ(value.Get(), row.expected) << row.typed;
    }
    value.SetFormat("= {0} =");
    EXPECT_FALSE(value.SetText("50"));
    EXPECT_TRUE(value.SetText("= 50 ="));
    value.SetFormat("{1} of {0}");
    EXPECT_FALSE(value.SetText("5 of 6")) << "two fields";
    value.SetFormat("{0x}");
    if (std::is_integral_v<decltype(value.Get())>)
    {
        EXPECT_TRUE(value.SetText("A"));
        EXPECT_EQ(value.Get(), 10);
        EXPECT_FALSE(value.SetText("Z"));
    }
    for (const char* const broken : {"{", "{0;", "{40}"})
        value.SetFormat(broken);
    EXPECT_EQ(value.GetFormat().ToUTF8(), "{0x}");
}

TYPED_TEST(MValueNumberOfAll, StoresUnderItsNameAndLoadsWhatIsANumber)
{
    MXMLItem item("Settings");
    TypeParam value(20, 10, 30);
    value.SetId("Depth");
    value.Set(25);
    value.Store(item);
    value.Set(11);
    value.Load(item);
    EXPECT_EQ(value.Get(), 25);

    item.SetAttribute("Depth", MString("31"));
    value.Load(item);
    EXPECT_EQ(value.Get(), 31) << "out of range until it is limited";
    for (const char* const unreadable : {"", "abc", " 5"})
    {
        item.SetAttribute("Depth", MString(unreadable));
        value.ClearChanged();
        value.Load(item);
        EXPECT_EQ(value.Get(), 31) << unreadable;
        EXPECT_FALSE(value.IsChanged()) << unreadable;
    }
    item.RemoveAttribute("Depth");
    value.Load(item);
    EXPECT_EQ(value.Get(), 20);
}

TYPED_TEST(MValueNumberOfAll, BindsToAVariableOutside)
{
    using Stored = typename TypeParam::Binding;
    auto variable = Stored(50).GetLocal();
    TypeParam value(&variable, 0, 40);
    EXPECT_EQ(variable, 40);
    EXPECT_EQ(value.GetDefault(), 40);
    variable = 10;
    EXPECT_EQ(value.Get01(), 0.25);
    value.Set01(0.5);
    EXPECT_EQ(variable, 20);
}

TYPED_TEST(MValueNumberOfAll, ItsDefinitionMaySayAnything)
{
    // Each list: the numbers of one definition. What it leaves is odd but within the type.
    constexpr const char* Numbers[] = {"-9223372036854775808",
                                       "9223372036854775807",
                                       "1e308",
                                       "-1e308",
                                       "0",
                                       "-1",
                                       "99999999999999999999",
                                       "x",
                                       "1e-320"};
    constexpr const char* Attributes[] = {"min", "max", "inc", "maxinc", "default", "value"};
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round)
    {
        MXMLItem item("value");
        for (const char* const attribute : Attributes)
            item.SetAttribute(attribute, MString(Numbers[random() % std::size(Numbers)]));
        TypeParam value;
        value.InitFromXML(item);
        value.Step(static_cast<int>(random()));
        value.StepScaled(static_cast<int>(random()), static_cast<double>(random() % 5000));
        value.StepScaled(std::numeric_limits<int>::min(), std::nan(""));
        value.Set01(0.3);
        value.SetItem(static_cast<int>(random()));
        value.SetText("-9223372036854775808");
        EXPECT_GE(value.GetItemCount(), 0);
        EXPECT_FALSE(value.GetContentFrom01(0.7).text.IsEmpty());
        EXPECT_GE(value.Get01(), 0.0);
        EXPECT_LE(value.Get01(), 1.0);

        value.Limit();
        const auto before = value.Get();
        EXPECT_FALSE(value.Set01(std::nan("")));
        EXPECT_EQ(value.Get(), before);
    }
}

TEST(MValueNumber, WordsNumbersByTheirFormat)
{
    MValueDouble plain(1.5, -10.0, 10.0);
    EXPECT_EQ(plain.GetText().ToUTF8(), "1.5000");
    EXPECT_EQ(plain.GetAsString().ToUTF8(), "1.500000");
    EXPECT_EQ(plain.GetContent().type, 8);
    plain.SetFormat("{0;+.1} st");
    EXPECT_EQ(plain.GetContent().text.ToUTF8(), "+1.5 st");
    EXPECT_EQ(plain.GetContentFrom01(0.25).text.ToUTF8(), "-5.0 st");
    Int whole(7, 0, 100);
    EXPECT_EQ(whole.GetText().ToUTF8(), "7");
    EXPECT_EQ(whole.GetAsString().ToUTF8(), "7");
    whole.SetFormat("{0;03}");
    EXPECT_EQ(whole.GetText().ToUTF8(), "007");
}

TEST(MValueNumber, StoresTwelveDecimals)
{
    MXMLItem item("Settings");
    MValueDouble(1.0 / 3.0, 0.0, 1.0).Store(item);
    EXPECT_EQ(item.GetAttribute("value", "").ToUTF8(), "0.333333333333");
    Int64(std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::min(), 0)
        .Store(item);
    EXPECT_EQ(item.GetAttribute("value", "").ToUTF8(), "-9223372036854775808");
}

TEST(MValueNumber, ATextCallbackStandsInForTheText)
{
    MValueDouble value(0.5, 0.0, 1.0);
    value.SetTextCallback({[] { return MString("half"); },
                           [&value](const MString& typed) { value.SetFromString(typed); }});
    EXPECT_EQ(value.GetText().ToUTF8(), "half");
    EXPECT_EQ(value.GetContent().text.ToUTF8(), "half");
    EXPECT_EQ(value.GetDisplayText().ToUTF8(), "0.5000");
    EXPECT_TRUE(value.SetText("7"));
    EXPECT_EQ(value.Get(), 1.0) << "limited behind the callback";
}

TEST(MValueNumber, StepsByItsRange)
{
    MValueDouble value(10.0, 0.0, 200.0);
    EXPECT_DOUBLE_EQ(value.GetInc(), 0.2);
    EXPECT_DOUBLE_EQ(value.GetMaxInc(), 2.0);
    EXPECT_TRUE(value.Step(-3));
    EXPECT_DOUBLE_EQ(value.Get(), 9.4);
    value.StepScaled(2, 3.0); // 8 * 0.2 each
    EXPECT_DOUBLE_EQ(value.Get(), 12.6);
    value.StepScaled(-1, 20.0); // cut to the largest step
    EXPECT_DOUBLE_EQ(value.Get(), 10.6);
    EXPECT_TRUE(value.Step(100000));
    EXPECT_EQ(value.Get(), 200.0);
    EXPECT_FALSE(value.Step(1));
    EXPECT_EQ(MValueDouble(0.0, 5.0, 5.0).GetInc(), 1.0);
}

TEST(MValueNumber, WholeNumbersStepByOneIncrementHoweverFarTheWheelTurns)
{
    Int value(500, 0, 2000);
    EXPECT_EQ(value.GetInc(), 2);
    EXPECT_EQ(value.GetMaxInc(), 20);
    value.Step(5);
    EXPECT_EQ(value.Get(), 502);
    value.Step(-5);
    EXPECT_FALSE(value.Step(0));
    EXPECT_EQ(value.Get(), 500);
    value.StepScaled(3, 2.5); // int(5.65) = 5 times 2, three times
    EXPECT_EQ(value.Get(), 530);
    value.StepScaled(1, 10.0);
    EXPECT_EQ(value.Get(), 550);
    EXPECT_FALSE(value.StepScaled(1, -1.0)) << "a factor below 1 is cut to nothing";
    EXPECT_EQ(Int(0, 0, 100).GetInc(), 1);
}

TEST(MValueNumber, PlacesAndValuesAreInverse)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    MValueDouble real(0.0, -3.0, 17.0);
    Float single(0.0f, -3.0, 17.0);
    Int whole(0, -20, 980);
    for (int round = 0; round < 1000; ++round)
    {
        const double position = uniform(random);
        real.Set01(position);
        EXPECT_NEAR(real.Get(), -3.0 + 20.0 * position, 1e-12);
        EXPECT_NEAR(real.Get01(), position, 1e-12);
        single.Set01(position);
        EXPECT_NEAR(single.Get01(), position, 1e-6);
        whole.Set01(position);
        EXPECT_LE(std::abs(whole.Get01() - position), 0.0005 + 1e-12) << "the nearest of 1000";
    }
}

TEST(MValueNumber, SixtyFourBitsAreMappedExactly)
{
    using Range = std::numeric_limits<std::int64_t>;
    constexpr std::int64_t Far = std::int64_t{1} << 60;
    Int64 narrow(Far, Far, Far + 10);
    EXPECT_TRUE(narrow.Set01(0.3));
    EXPECT_EQ(narrow.Get(), Far + 3);
    EXPECT_EQ(narrow.Get01(), 0.3);
    EXPECT_EQ(narrow.GetItemCount(), 11);

    Int64 all(0, Range::min(), Range::max());
    EXPECT_DOUBLE_EQ(all.Get01(), 0.5);
    all.Set01(0.0);
    EXPECT_EQ(all.Get(), Range::min());
    EXPECT_FALSE(all.Step(-1));
    all.Set01(1.0);
    EXPECT_EQ(all.Get(), Range::max());
    EXPECT_FALSE(all.Step(1));
    all.Set01(0.25);
    EXPECT_EQ(all.Get(), Range::min() / 2);
    EXPECT_EQ(all.GetItemCount(), std::numeric_limits<int>::max());

    Int full(0, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    full.Set01(0.75);
    EXPECT_EQ(full.Get(), (1 << 30) - 1) << "of 2^32 - 1 steps";
    EXPECT_EQ(full.GetItemCount(), std::numeric_limits<int>::max());
}

TEST(MValueNumber, ValuesStayWithinWhatIsStored)
{
    Int16 narrow(0, -100000, 100000);
    narrow.Set(70000);
    EXPECT_EQ(narrow.Get(), 32767);
    narrow.SetFromString("-70000");
    EXPECT_EQ(narrow.Get(), -32768);
    Float single(0.0f, 0.0, 1e300);
    single.Set01(1.0);
    EXPECT_EQ(single.Get(), std::numeric_limits<float>::max());
    Float tenth(0.0f, 0.0, 0.1);
    tenth.Set01(1.0);
    tenth.ClearChanged();
    tenth.Limit();
    EXPECT_FALSE(tenth.IsChanged()) << "0.1f is a little above 0.1, and the same as stored";
}

TEST(MValueNumber, OddRangesAreNeutral)
{
    MValueDouble point(5.0, 5.0, 5.0);
    EXPECT_EQ(point.Get01(), 0.0);
    EXPECT_FALSE(point.Set01(1.0));
    Int turned(5, 30, 10);
    EXPECT_EQ(turned.Get(), 30) << "the lower end counts last";
    EXPECT_FALSE(turned.Set01(0.5));
    EXPECT_EQ(turned.GetItemCount(), 0);
    double variable = std::nan("");
    MValueDouble bound(&variable, -1.0, 1.0);
    EXPECT_EQ(variable, 0.0);
    variable = std::nan("");
    EXPECT_EQ(bound.Get01(), 0.0);
}

TEST(MValueNumber, ItemsAreTheWholeValuesOfTheRange)
{
    Int whole(3, 2, 6);
    EXPECT_EQ(whole.GetItemCount(), 5);
    EXPECT_EQ(whole.GetItemContent(3).text.ToUTF8(), "5");
    EXPECT_TRUE(whole.SetItem(4));
    EXPECT_EQ(whole.Get(), 6);
    EXPECT_EQ(MValueDouble(0.0, 0.2, 3.7).GetItemCount(), 3);
    MValueDouble single(0.5, 0.2, 1.3); // one whole value, which stands for the lower end
    EXPECT_EQ(single.GetItemCount(), 1);
    EXPECT_EQ(single.GetItemContent(0).text.ToUTF8(), "0.2000");
    single.SetItem(0);
    EXPECT_EQ(single.Get(), 0.2);
}

TEST(MValueNumber, ReadsItsDefinition)
{
    MXMLItem item("value");
    item.SetAttribute("id", MString("Depth"));
    item.SetAttribute("min", MString("-2"));
    item.SetAttribute("max", MString("8"));
    item.SetAttribute("value", MString("3"));
    item.SetAttribute("inc", MString("4"));
    item.SetAttribute("format", MString("{0;.1} st"));
    MValueDouble value;
    value.InitFromXML(item);
    EXPECT_EQ(value.GetId().ToUTF8(), "Depth");
    EXPECT_EQ(value.GetMin(), -2.0);
    EXPECT_EQ(value.GetMax(), 8.0);
    EXPECT_EQ(value.GetDefault(), 3.0) << "the value where no default is given";
    EXPECT_EQ(value.GetInc(), 4.0);
    EXPECT_EQ(value.GetMaxInc(), 4.0) << "at least the step";
    EXPECT_EQ(value.GetText().ToUTF8(), "3.0 st");

    item.SetAttribute("default", MString("5"));
    item.SetAttribute("maxinc", MString("2"));
    value.InitFromXML(item);
    EXPECT_EQ(value.Get(), 3.0);
    EXPECT_EQ(value.GetDefault(), 5.0);
    EXPECT_EQ(value.GetMaxInc(), 2.0);
    item.RemoveAttribute("value");
    value.InitFromXML(item);
    EXPECT_EQ(value.Get(), 5.0);

    item.SetAttribute("default", MString("50"));
    item.SetAttribute("format", MString("{0"));
    value.InitFromXML(item);
    EXPECT_EQ(value.Get(), 50.0) << "a definition is not limited";
    EXPECT_EQ(value.GetFormat().ToUTF8(), "{0;.1} st");
}

} // namespace
