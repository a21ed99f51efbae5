#include "tools/pack/PackFolder.h"

#include <string>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "foundation/xml/MResourcePack.h"
#include "tests/TemporaryFolder.h"

namespace
{

MString Name(const TemporaryFolder& folder)
{
    return MString::FromUTF8(folder.GetPath().string());
}

void WriteLetter(const TemporaryFolder& folder, const char* name)
{
    const std::uint8_t letter[] = {static_cast<std::uint8_t>(std::string(name).back())};
    std::filesystem::create_directories((folder / name).parent_path());
    folder.Write(name, letter);
}

TEST(PackFolder, SortsWhatItFindsBelowTheFolder)
{
    const TemporaryFolder folder;
    for (const char* name : {"z", "locale/b", "A", ".hidden", ".git/x", "locale/a", "a-b", "y/e/c"})
        WriteLetter(folder, name);
    MResourcePack pack;
    PackFolder(pack, Name(folder));
    const std::span<const std::byte> all = pack.GetAttachment();
    // A, a-b, locale/a, locale/b, y/e/c, z
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(all.data()), all.size()), "Ababcz");
    EXPECT_EQ(pack.FindFile("y/e/c").data(), &all[4]);
}

TEST(PackFolder, RefusesWhatCouldNotBeFound)
{
    const TemporaryFolder folder;
    folder.Write("empty", {});
    MResourcePack pack;
    EXPECT_THROW(PackFolder(pack, Name(folder)), MException);
    EXPECT_THROW(PackFolder(pack, "no such folder"), MException);
}

} // namespace
