#include "foundation/streams/MStdFileStream.h"

#include <algorithm>
#include <functional>
#include <random>

#include "foundation/streams/MConsoleStream.h"
#include "tests/TemporaryFolder.h"
#include "tests/foundation/streams/StreamTest.h"

namespace
{

using Opening = MStdFileStream::Opening;

MString NameIn(const TemporaryFolder& folder)
{
    return MString::FromUTF8((folder / "file").generic_string());
}

/// Reads and writes in any order, without the seeks that the C library wants between them.
TEST(MStdFileStream, BehavesAsAStringWithAPosition)
{
    const TemporaryFolder folder;
    MStdFileStream stream(NameIn(folder), Opening::Create);
    std::mt19937 random(5);
    std::string model;
    std::size_t position = 0;
    for (int step = 0; step < 3000; ++step)
    {
        const std::size_t count = random() % 300;
        switch (random() % 8)
        {
        case 0:
            position = random() % (model.size() + 1);
            stream.Seek(static_cast<std::int64_t>(position) -
                            static_cast<std::int64_t>(model.size()),
                        MStream::FromEnd);
            break;
        case 1:
            if (random() % 10 == 0)
            {
                stream.Truncate();
                model.resize(position);
            }
            break;
        case 2:
            ASSERT_EQ(stream.GetSize(), static_cast<std::int64_t>(model.size())) << step;
            ASSERT_EQ(stream.EndOfStream(), position == model.size()) << step;
            break;
        case 3:
        case 4:
        {
            const std::string text = TextOf(RandomBytes(count, random()));
            model.replace(position, std::min(count, model.size() - position), text);
            stream.Write(BytesOf(text));
            position += count;
            break;
        }
        default:
            Bytes buffer(count);
            buffer.resize(stream.Read(buffer));
            ASSERT_EQ(TextOf(buffer), model.substr(position, count)) << step;
            position += buffer.size();
        }
        ASSERT_EQ(stream.GetPosition(), static_cast<std::int64_t>(position)) << step;
    }
    stream.Close();
    MStdFileStream reopened(NameIn(folder), Opening::Existing);
    EXPECT_TRUE(TextOf(ReadAll(reopened)) == model);
}

TEST(MStdFileStream, ReachesBeyondFourGigabytes)
{
    const TemporaryFolder folder;
    constexpr std::int64_t Far = (std::int64_t{1} << 33) + 5;
    MStdFileStream stream(NameIn(folder), Opening::Create);
    stream.Seek(Far, MStream::FromStart);
    stream.Write(BytesOf("end"));
    EXPECT_EQ(stream.GetSize(), Far + 3);
    stream.Seek(-3, MStream::FromCurrent);
    EXPECT_EQ(stream.GetPosition(), Far);
    EXPECT_EQ(TextOf(ReadAll(stream)), "end");
    stream.Seek(-1, MStream::FromEnd);
    EXPECT_EQ(Thrown([&] { stream.Seek(-1, MStream::FromStart); }),
              "Could not perform file seek. (0)");
    EXPECT_EQ(Thrown([&] { stream.Seek(0, 3); }), "Invalid seek origin. (2)");
    EXPECT_EQ(TextOf(ReadAll(stream)), "d") << "after a failure";
}

TEST(MStdFileStream, CreatingEmptiesAndOpeningKeeps)
{
    const TemporaryFolder folder;
    const MString name = NameIn(folder);
    EXPECT_EQ(Thrown([&] { MStdFileStream(name, Opening::Existing); }),
              "File \"" + name.ToUTF8() + "\" could not be open. Make sure it exists. (257)");
    MString nowhere = name;
    nowhere.Append("/below a file that is none");
    EXPECT_EQ(Thrown([&] { MStdFileStream(nowhere, Opening::Create); }),
              "File \"" + nowhere.ToUTF8() +
                  "\" could not be created. Make sure there is no write-protected file already "
                  "existing. (257)");

    MStdFileStream(name, Opening::Create).Write(BytesOf("first"));
    MStdFileStream(name, Opening::Existing).Write(BytesOf("F"));
    EXPECT_EQ(folder.Read("file").size(), 5u);
    EXPECT_EQ(folder.Read("file")[0], 'F');
    MStdFileStream(name, Opening::Create).Close();
    EXPECT_TRUE(folder.Read("file").empty());
}

TEST(MStdFileStream, WithoutAFileEveryOperationFails)
{
    const TemporaryFolder folder;
    MStdFileStream never;
    MStdFileStream closed(NameIn(folder), Opening::Create);
    closed.Close();
    for (MStdFileStream* const stream : {&never, &closed})
    {
        Bytes buffer(1);
        const std::function<void()> uses[] = {
            [&] { stream->Write(buffer); }, [&] { stream->Read(buffer); },
            [&] { stream->Seek(0, 0); },    [&] { stream->GetPosition(); },
            [&] { stream->Flush(); },       [&] { stream->EndOfStream(); },
            [&] { stream->Truncate(); },    [&] { stream->GetSize(); },
        };
        for (const auto& use : uses)
            EXPECT_EQ(Thrown(use), "File stream is not initialized. (0)");
        EXPECT_EQ(Thrown([&] { stream->Close(); }), "nothing");
    }
}

TEST(MConsoleStream, WritesEveryByteToTheStandardOutput)
{
    MConsoleStream& console = MConsoleStream::Get();
    testing::internal::CaptureStdout();
    console.WriteLine("a line");
    console.Write(BytesOf(std::string_view("\0\xFF", 2)));
    console.Flush();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), std::string("a line\n\0\xFF", 9));
    EXPECT_EQ(Thrown([&] { console.GetPosition(); }), "File stream is not initialized. (0)");
}

} // namespace
