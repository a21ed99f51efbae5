#include "host/MAudioPluginAutomation.h"

#include <gtest/gtest.h>

#include "foundation/strings/MStringFormatter.h"
#include "tests/host/AutomationUnderTest.h"

namespace
{

class MAudioPluginAutomationTest : public ::testing::Test
{
protected:
    MAudioPluginAutomationTest()
    {
        plugin.AddAdapter(first);
        plugin.AddTemporaryAdapter(std::make_unique<RowAdapter>(2, "passing"));
        plugin.AddAdapter(last);
    }

    SilentPlugin plugin;
    RowAdapter first{3, "first"};
    RowAdapter last{1, "last"};
};

TEST_F(MAudioPluginAutomationTest, EachIndexReachesItsAdapter)
{
    struct Case
    {
        int index;
        const char* name;       ///< empty: nobody's
        const char* afterwards; ///< without the temporary adapter
    };
    constexpr Case Cases[] = {
        {-1000, "", ""},         {-1, "", ""},        {0, "first0", "first0"},
        {2, "first2", "first2"}, {3, "passing0", ""}, {4, "passing1", ""},
        {5, "last0", "last0"},   {6, "", ""},         {1000, "", ""},
    };
    const auto check = [&](const Case& row, const MString& name)
    {
        EXPECT_EQ(plugin.GetParameterNameWithoutSection(row.index), name) << row.index;
        plugin.SetParameter(row.index, 0.25, true);
        EXPECT_EQ(plugin.GetParameter(row.index), name.IsEmpty() ? 0.0 : 0.25) << row.index;
        EXPECT_EQ(plugin.GetParameterDefaultValue(row.index), name.IsEmpty() ? 0.0 : 0.5);
        const MString id = name.IsEmpty() ? name : MStringFormatter("Rows.{0}").Add(name).Result();
        EXPECT_EQ(plugin.GetParameterID(row.index), id) << row.index;
        EXPECT_EQ(plugin.FindParameter(id), name.IsEmpty() ? -1 : row.index);
    };
    for (const Case& row : Cases)
        check(row, row.name);
    plugin.DestroyTemporaryAutomationAdapters();
    for (const Case& row : Cases)
        check(row, row.afterwards);
    EXPECT_EQ(plugin.FindParameter("Rows.passing0"), -1);
    EXPECT_EQ(plugin.FindParameterByName("last0 (Rows)"), 5);
    EXPECT_EQ(plugin.GetParameterCount(), 6);
}

TEST_F(MAudioPluginAutomationTest, IndicesOfTemporaryAdaptersAtTheEndAreFreeAgain)
{
    plugin.AddTemporaryAdapter(std::make_unique<RowAdapter>(4));
    EXPECT_EQ(plugin.GetParameterCount(), 10);
    plugin.DestroyTemporaryAutomationAdapters();
    EXPECT_EQ(plugin.GetParameterCount(), 6);
    RowAdapter next(1, "next");
    plugin.AddAdapter(next);
    EXPECT_EQ(plugin.FindParameter("Rows.next0"), 6);
}

TEST_F(MAudioPluginAutomationTest, AnEchoSetsNothing)
{
    plugin.SetParameter(0, 0.0, true);
    first.sets = 0;
    plugin.SetParameterIfChanged(0, 1e-7, true);
    plugin.SetParameterIfChanged(0, -1e-7, true);
    EXPECT_EQ(first.sets, 0);
    plugin.SetParameterIfChanged(0, 1.01e-7, true);
    EXPECT_EQ(first.sets, 1);
}

TEST_F(MAudioPluginAutomationTest, PendingEditorUpdatesAreTakenOnceEach)
{
    EXPECT_FALSE(plugin.HasPendingEditorUpdates());
    for (RowAdapter* adapter : {&last, &first, &last, &last})
        plugin.NeedUpdateEditor(*adapter);
    const std::vector<MAutomationAdapter*> expected{&last, &first};
    EXPECT_EQ(plugin.TakePendingEditorUpdates(), expected);
    EXPECT_TRUE(plugin.TakePendingEditorUpdates().empty());
    plugin.NeedUpdateEditor(first);
    plugin.DestroyTemporaryAutomationAdapters();
    EXPECT_FALSE(plugin.HasPendingEditorUpdates()) << "some of them may be gone";
}

} // namespace
