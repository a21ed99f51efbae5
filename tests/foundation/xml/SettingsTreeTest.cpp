#include "foundation/xml/SettingsTree.h"

#include <string>

#include <gtest/gtest.h>

#include "foundation/limits.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

struct CountCase
{
    const char* what;
    const char* name;
    int count;  ///< of such subitems in one item
    int spread; ///< items that have as many each
    const char* failure;
};

constexpr const char* TooManyPoints = "Invalid file contents. Too many points in a curve.";
constexpr const char* TooManyTargets = "Invalid file contents. Too many targets.";

constexpr CountCase Cases[] = {
    {"a full curve", "Point", limits::CurvePoints, 1, ""},
    {"one point more", "Point", limits::CurvePoints + 1, 1, TooManyPoints},
    {"names in another case", "pOINT", limits::CurvePoints + 1, 1, TooManyPoints},
    {"many in all", "Point", limits::CurvePoints / 2 + 1, 2, ""},
    {"all targets", "Parameter", limits::Targets, 1, ""},
    {"one target more", "Parameter", limits::Targets + 1, 1, TooManyTargets},
    {"other items", "Points", limits::CurvePoints + 1, 1, ""},
};

TEST(SettingsTree, BoundsTheSubitemsOfEachItem)
{
    for (const CountCase& row : Cases)
    {
        MXMLItem settings("settings");
        for (int i = 0; i < row.spread; ++i)
        {
            MXMLItem& deep = settings.AddSubItem("Modulator").AddSubItem("Envelope");
            for (int j = 0; j < row.count; ++j)
                deep.AddSubItem(row.name);
        }
        std::string failure;
        try
        {
            CheckSettingsTree(settings);
        }
        catch (const MException& refusal)
        {
            EXPECT_EQ(refusal.code, 256);
            failure = refusal.text.ToUTF8();
        }
        EXPECT_EQ(failure, row.failure) << row.what;
    }
}

} // namespace
