#include "foundation/modules/MResources.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "tests/foundation/modules/DataUnderTest.h"

namespace
{

std::string Text(const MString& name)
{
    const MMemoryStream stream = MResources::Open(name);
    const std::span<const std::byte> bytes = stream.GetData();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST(MResources, PrefersWhatTheUserHasPutInThePlaceOfOurs)
{
    const DataUnderTest under;
    EXPECT_NE(Text("locale/de.xml").find("<translation language=\"de\">"), std::string::npos);
    under.Write("Quillfern/Tonvale/resources/locale/de.xml", "mine");
    EXPECT_EQ(Text("locale/de.xml"), "mine");
}

TEST(MResources, AreThereWithoutAnyHome)
{
    const EnvironmentVariable none("QUILLFERN_DATA", nullptr);
    const EnvironmentVariable data("XDG_DATA_HOME", nullptr);
    const EnvironmentVariable home("HOME", nullptr);
    EXPECT_FALSE(Text("locale/de.xml").empty());
}

TEST(MResources, RefuseNamesThatAreNotPlain)
{
    const DataUnderTest under;
    under.Write("Quillfern/Tonvale/secret", "secret");
    under.Write("Quillfern/Tonvale/resources/a/..b..", "found");
    ASSERT_EQ(Text("a/..b.."), "found");

    const std::string absolute = (under.folder / "Quillfern/Tonvale/secret").generic_string();
    for (const std::string& name :
         {std::string("../secret"), std::string("a/../../secret"), absolute,
          std::string("a//..b.."), std::string("./a/..b.."), std::string("a/./..b.."),
          std::string("/a/..b.."), std::string("a\\..b.."), std::string("a/..b../"),
          std::string("C:a"), std::string("a"), std::string("a/none"), std::string()})
        try
        {
            MResources::Open(MString::FromUTF8(name));
            ADD_FAILURE() << name;
        }
        catch (const MException& failure)
        {
            EXPECT_EQ(failure.text.ToUTF8(), "Could not find resource \"" + name + "\".");
        }
}

TEST(MResourcesThreads, ReadTheInnerPackTogether)
{
    const DataUnderTest under;
    std::atomic<int> found = 0;
    {
        const auto read = [&] { found += Text("locale/de.xml").empty() ? 0 : 1; };
        const std::jthread threads[] = {std::jthread(read), std::jthread(read), std::jthread(read),
                                        std::jthread(read)};
    }
    EXPECT_EQ(found, 4);
}

} // namespace
