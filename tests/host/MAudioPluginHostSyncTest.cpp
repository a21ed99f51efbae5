#include "host/MAudioPluginHostSync.h"

#include <cstdio>

#include <gtest/gtest.h>

namespace
{

TEST(MAudioPluginHostSync, EachLengthIsWhatItsNameSays)
{
    MAudioPluginHostSync sync;
    for (int index = 0; index < MAudioPluginHostSync::LengthCount; ++index)
    {
        const std::string name = MAudioPluginHostSync::GetLengthName(index).ToUTF8();
        int above = 0;
        int below = 0;
        char kind = ' ';
        ASSERT_GE(std::sscanf(name.c_str(), "%d/%d%c", &above, &below, &kind), 2) << index;
        const double factor = kind == 'D' ? 1.5 : kind == 'T' ? 2.0 / 3.0 : 1.0;
        sync.Length = index;
        EXPECT_NEAR(sync.GetSyncLength() * factor * above / below, 1.0, 1e-12) << name;
        EXPECT_EQ(MAudioPluginHostSync::FindLength(name.c_str()), index);
    }
    EXPECT_EQ(MAudioPluginHostSync::FindLength("1/3"), -1);
    for (const int nonsense : {-1, 27})
    {
        sync.Length = nonsense;
        EXPECT_EQ(sync.GetSyncLength(), 4.0) << "a quarter";
        EXPECT_TRUE(MAudioPluginHostSync::GetLengthName(nonsense).IsEmpty());
    }
}

} // namespace
