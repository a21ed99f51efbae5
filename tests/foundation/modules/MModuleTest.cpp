#include "foundation/modules/MModule.h"

#include <gtest/gtest.h>

#include "foundation/modules/SystemPaths.h"
#include "tests/foundation/modules/DataUnderTest.h"

namespace
{

using Path = std::filesystem::path;

Path GetDataPath()
{
    return MModule::Get().GetDataPath().ToUTF8();
}

TEST(MModule, MakesItsFoldersInTheUsersData)
{
    const DataUnderTest under;
    EXPECT_EQ(GetDataPath(), under.folder / "Quillfern" / "Tonvale");
    EXPECT_TRUE(std::filesystem::is_directory(GetDataPath()));
    EXPECT_EQ(Path(systempaths::GetFamilyFolder().ToUTF8()), under.folder / "Quillfern");
}

TEST(MModule, TakesOverDataOfThePreviousLayoutOnce)
{
    const DataUnderTest under;
    under.Write("QuillfernTonvale/Style.cfg", "old");
    GetDataPath();
    EXPECT_EQ(under.folder.List(), "Quillfern");
    EXPECT_TRUE(exists(under.folder / "Quillfern/Tonvale/Style.cfg"));

    under.Write("QuillfernTonvale/Style.cfg", "older");
    GetDataPath();
    EXPECT_EQ(under.folder.List(), "Quillfern QuillfernTonvale");
    EXPECT_EQ(under.folder.Read("Quillfern/Tonvale/Style.cfg").size(), 3U);
}

TEST(MModule, AnswersWhereTheDataWouldBeIfTheyCannot)
{
    const DataUnderTest under;
    under.Write("Quillfern", "a file in the way");
    EXPECT_EQ(GetDataPath(), under.folder / "Quillfern" / "Tonvale");
}

} // namespace
