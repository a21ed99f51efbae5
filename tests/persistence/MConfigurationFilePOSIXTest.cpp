#include "persistence/MConfigurationFile.h"
#include "tests/FileSizeLimit.h"
#include "tests/persistence/ConfigurationFolder.h"

namespace
{

TEST(MConfigurationFile, AFullDiskLosesNothing)
{
    const ConfigurationFolder folder;
    MConfigurationFile file(folder.GetName(), "C.xml");
    const auto setLength = [&](std::size_t length)
    {
        file.Change([&](MXMLItem& item)
                    { item.SetAttribute("a", MString::FromUTF8(std::string(length, 'x'))); });
    };
    setLength(10);
    const std::string before = folder.ReadText("C.xml");
    {
        const FileSizeLimit limit(200);
        EXPECT_EQ(Thrown([&] { setLength(200); }),
                  "Error writing to file \"" + files::PathJoin(folder.GetName(), "C.xml").ToUTF8() +
                      "\". Probably disk full.");
        EXPECT_EQ(folder.ReadText("C.xml"), before);
        EXPECT_EQ(file.Get("a", ""), "xxxxxxxxxx");
    }
    setLength(300);
    EXPECT_EQ(file.Get("a", "").Length(), 300);
}

} // namespace
