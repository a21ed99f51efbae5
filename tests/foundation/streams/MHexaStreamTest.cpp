#include "foundation/streams/MHexaStream.h"

#include "foundation/streams/MMemoryStream.h"
#include "tests/foundation/streams/StreamTest.h"

namespace
{

TEST(MHexaStream, WritesUpperCaseDigitsAndReadsThemBack)
{
    Bytes every(256);
    for (std::size_t i = 0; i < every.size(); ++i)
        every[i] = static_cast<std::byte>(i);

    MMemoryStream text;
    MHexaStream(text).Write(every);
    text.Seek(0, MStream::FromStart);
    const std::string written = TextOf(text.GetData());
    ASSERT_EQ(written.size(), 512u);
    for (unsigned i = 0; i < 256; ++i)
    {
        char expected[3];
        std::snprintf(expected, sizeof(expected), "%02X", i);
        EXPECT_EQ(written.substr(std::size_t{2} * i, 2), expected);
    }

    for (const std::size_t piece : {1U, 7U, 64U, 65U, 1000U})
    {
        text.Seek(0, MStream::FromStart);
        MHexaStream reader(text);
        EXPECT_TRUE(ReadAll(reader, piece) == every) << piece;
    }
    MMemoryStream source(every);
    source.Seek(1, MStream::FromStart);
    EXPECT_EQ(MHexaStream::ToText(source).ToUTF8(), written.substr(2));
}

TEST(MHexaStream, ReadsWhatPeopleAndToolsWrite)
{
    struct Case
    {
        const char* what;
        std::string text;
        std::string expected; ///< bytes, or "!" where it is refused
    };
    const Case cases[] = {
        {"nothing", "", ""},
        {"white space alone", " \r\n\t", ""},
        {"both cases", "6a6B4C", "jkL"},
        {"white space around pairs", "\n 61\t62\r\n63 ", "abc"},
        {"much of it", std::string(300, ' ') + "61" + std::string(127, '\n') + "62", "ab"},
        {"white space within pairs", "6 16\n\r\n2", "ab"},
        {"all characters up to the blank", std::string("6\0001\x01 \x1F", 6) + "62", "ab"},
        {"half a pair", "61626", "!"},
        {"half a pair and white space", "6 ", "!"},
        {"no digit", "6g", "!"},
        {"before the digits", "/0", "!"},
        {"behind the digits", ":0", "!"},
        {"before the letters", "@0", "!"},
        {"between the letters", "`0", "!"},
        {"beyond ASCII", "61\xE1", "!"},
    };
    for (const Case& row : cases)
        for (const std::size_t piece : {1U, 2U, 500U})
        {
            MMemoryStream source = MMemoryStream::Refer(BytesOf(row.text));
            MHexaStream reader(source);
            std::string read;
            const std::string failure = Thrown([&] { read = TextOf(ReadAll(reader, piece)); });
            if (row.expected == "!")
                EXPECT_EQ(failure, "Could not read required data from stream. (256)") << row.what;
            else
            {
                EXPECT_EQ(failure, "nothing") << row.what;
                EXPECT_EQ(read, row.expected) << row.what;
            }
        }
}

TEST(MHexaStream, TakesNoMoreTextThanItNeeds)
{
    for (const char* const text : {"6162rest", " 6162rest"})
    {
        MMemoryStream source = MMemoryStream::Refer(BytesOf(text));
        MHexaStream reader(source);
        Bytes buffer(2);
        EXPECT_EQ(reader.Read(buffer), 2u);
        EXPECT_EQ(TextOf(source.GetData()), "rest");
    }
}

} // namespace
