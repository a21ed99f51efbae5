#include <array>

#include <gtest/gtest.h>

#include "foundation/modules/MLibrary.h"
#include "tests/foundation/modules/DataUnderTest.h"

namespace
{

struct Case
{
    const char* library;
    const char* resources;
};

constexpr Case Cases[] = {
    {"vst/Module.so", "vst/resources"},
    {"Module.vst3/Contents/arch/Module.so", "Module.vst3/Contents/Resources"},
};

TEST(ResourceModule, KnowsItsOwnPlaceAndWhatIsInstalledThere)
{
    const DataUnderTest under;
    for (const Case& row : Cases)
    {
        under.Write(std::string(row.resources) + "/sub/note.txt", row.resources);
        const std::filesystem::path library = under.folder / row.library;
        std::filesystem::create_directories(library.parent_path());
        std::filesystem::copy_file(TONVALE_RESOURCE_MODULE, library);
        std::filesystem::create_symlink(library, under.folder / "link.so");

        const MLibrary module(MString::FromUTF8((under.folder / "link.so").string()));
        const auto tell = module.Find<void (*)(const char*, char*)>("TellResource");
        std::array<char, 4096> text{};
        tell("sub/note.txt", text.data());
        EXPECT_EQ(std::string(text.data()), library.string() + " " + row.resources);
        std::filesystem::remove(under.folder / "link.so");
    }
}

} // namespace
