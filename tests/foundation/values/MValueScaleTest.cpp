#include "foundation/values/MValueScale.h"

#include <memory>

#include <gtest/gtest.h>

#include "foundation/values/MValueFrequency.h"
#include "foundation/values/MValueUnits.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

TEST(MValueScale, BendsPlaces)
{
    MValueScaleSqr square(std::make_unique<MValuePercents>());
    MValueScalePower<4> fourth(std::make_unique<MValuePercents>());
    EXPECT_TRUE(square.Set01(0.5));
    EXPECT_EQ(square.GetText().ToUTF8(), "25.0%");
    EXPECT_DOUBLE_EQ(square.Get01(), 0.5);
    EXPECT_EQ(square.GetContentFrom01(0.1).text.ToUTF8(), "1.0%");
    EXPECT_TRUE(fourth.Set01(0.6));
    EXPECT_EQ(fourth.GetText().ToUTF8(), "13.0%");
    EXPECT_DOUBLE_EQ(fourth.Get01(), 0.6);
    EXPECT_EQ(fourth.GetContentFrom01(0.25).text.ToUTF8(), "0.39%");
    for (int i = 0; i <= 100; ++i)
    {
        const double position = i * 0.01;
        square.Set01(position);
        EXPECT_NEAR(square.Get01(), position, 1e-12);
        fourth.Set01(position);
        EXPECT_NEAR(fourth.Get01(), position, 1e-12);
    }
}

TEST(MValueScale, StepsAlongTheBentScale)
{
    MValueScaleSqr value(std::make_unique<MValuePercents>(0.25));
    EXPECT_TRUE(value.Step(100));
    EXPECT_DOUBLE_EQ(value.GetInner().Get01(), 0.36);
    EXPECT_TRUE(value.Step(-100000));
    EXPECT_FALSE(value.Step(-1));
    EXPECT_TRUE(value.StepScaled(1, 0.0)) << "the inner value's own steps";
    EXPECT_DOUBLE_EQ(value.GetInner().Get01(), 0.001);
    MValueScaleSqr below(std::make_unique<MValueFrequency>());
    below.SetFromString("1"); // below the range, where frequencies have places below 0
    EXPECT_EQ(below.Get01(), 0.0);
}

TEST(MValueScale, LeavesTheRestToTheInnerValue)
{
    MXMLItem item("value");
    item.SetAttribute("id", MString("mix"));
    item.SetAttribute("max", MString("4"));
    item.SetAttribute("value", MString("1"));
    MValueScalePower<4> value(std::make_unique<MValuePercents>());
    value.InitFromXML(item);
    EXPECT_EQ(value.GetItemCount(), 5);
    EXPECT_EQ(value.GetItemContent(2).text.ToUTF8(), "200.0%");
    EXPECT_TRUE(value.SetItem(3));
    value.Store(item);
    EXPECT_EQ(item.GetAttribute("mix", "").ToUTF8(), "3.000000000000");
    EXPECT_TRUE(value.SetDefault());
    EXPECT_EQ(value.GetContent().text.ToUTF8(), "100.0%");
    value.Load(item);
    EXPECT_EQ(value.GetAsString().ToUTF8(), "3.000000");
    EXPECT_TRUE(value.SetText("50"));
    EXPECT_EQ(value.GetDisplayText().ToUTF8(), "50.0%");
    value.SetFromString("9");
    value.Limit();
    EXPECT_EQ(value.GetInner().GetAsString().ToUTF8(), "4.000000");
}

} // namespace
