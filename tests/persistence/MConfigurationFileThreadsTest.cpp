#include <atomic>
#include <thread>

#include "foundation/strings/MStringFormatter.h"
#include "persistence/MConfigurationFile.h"
#include "tests/persistence/ConfigurationFolder.h"

namespace
{

constexpr int Changes = 20;

MString KeyOf(int writer, int change)
{
    return MStringFormatter("key{0}x{1}").Add(writer).Add(change).Result();
}

TEST(MConfigurationFileThreads, WritersLoseNothingAndReadersSeeWholeFiles)
{
    const ConfigurationFolder folder;
    MConfigurationFile shared(folder.GetName(), "C.xml");
    MConfigurationFile other(folder.GetName(), "C.xml");
    shared.Change([](MXMLItem& item) { item.SetAttribute("first", 1); });

    std::atomic<bool> isWritten = false;
    std::atomic<int> failures = 0;
    const auto write = [&](MConfigurationFile& file, int writer)
    {
        for (int i = 0; i < Changes; ++i)
        {
            file.Change([&](MXMLItem& item) { item.SetAttribute(KeyOf(writer, i), i); });
            failures += file.Get(KeyOf(writer, i), "") != MString::FromInteger(i) ? 1 : 0;
        }
    };
    std::thread writers[] = {std::thread(write, std::ref(shared), 0),
                             std::thread(write, std::ref(shared), 1),
                             std::thread(write, std::ref(other), 2)};
    std::thread reader(
        [&]
        {
            while (!isWritten)
                for (MConfigurationFile* const file : {&shared, &other})
                    failures += file->Get("first", "") == "1" ? 0 : 1;
        });
    for (std::thread& writer : writers)
        writer.join();
    isWritten = true;
    reader.join();

    EXPECT_EQ(failures, 0);
    MConfigurationFile fresh(folder.GetName(), "C.xml");
    for (int writer = 0; writer < 3; ++writer)
        for (int i = 0; i < Changes; ++i)
            EXPECT_EQ(fresh.Get(KeyOf(writer, i), ""), MString::FromInteger(i));
}

} // namespace
