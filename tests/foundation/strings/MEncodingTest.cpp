#include "foundation/strings/MEncoding.h"

#include <random>
#include <set>

#include <gtest/gtest.h>

#include "foundation/streams/MTextStream.h"
#include "foundation/strings/Codecs.h"
#include "foundation/threads/MException.h"
#include "tests/foundation/strings/Bytes.h"

namespace
{

using namespace std::string_literals;

std::vector<const MEncoding::Codec*> AllCodecs()
{
    std::vector<const MEncoding::Codec*> codecs = {
        &MEncoding::ASCIICodec::Get(), &MEncoding::UTF8Codec::Get(), &MEncoding::UTF16Codec::Get()};
    for (const MEncoding::TableCodec& codec : MEncoding::TableCodec::All())
        codecs.push_back(&codec);
    return codecs;
}

/// What happens to be in files, broken sequences and all.
std::string RandomBytes(std::minstd_rand& random, std::size_t size)
{
    std::string bytes;
    while (bytes.size() < size)
        switch (random() % 4)
        {
        case 0:
            bytes += "a longer run of ASCII, \r\n";
            break;
        case 1:
            bytes += "\xE2\x82\xAC\xF0\x9D\x84\x9E\xEF\xBB\xBF";
            break;
        default:
            bytes += static_cast<char>(random() % 256);
        }
    return bytes;
}

std::u16string RandomUnits(std::minstd_rand& random, std::size_t size)
{
    std::u16string units;
    while (units.size() < size)
    {
        constexpr char16_t Starts[] = {0x20,   0x20,   0x20,   0xA0,  0x400,
                                       0x2000, 0xD800, 0xDBFF, 0xDC00};
        const auto step = static_cast<char16_t>(random() % 64);
        units += static_cast<char16_t>(Starts[random() % std::size(Starts)] + step);
    }
    return units;
}

/// All of @p source in pieces of @p pieceSize, each into a target of @p room.
template <typename Unit, typename From, typename Convert>
std::basic_string<Unit> InPieces(std::span<const From> source, std::size_t pieceSize,
                                 std::size_t room, const Convert& convert)
{
    using Target = std::conditional_t<sizeof(Unit) == 1, std::byte, Unit>;
    std::basic_string<Unit> result;
    MCodecState state;
    std::vector<Target> target(room);
    while (!source.empty())
    {
        auto piece = source.first(std::min(source.size(), pieceSize));
        source = source.subspan(piece.size());
        while (!piece.empty())
        {
            const MCodecProgress progress = convert(state, piece, std::span<Target>(target));
            if (progress.read == 0 && progress.written == 0)
                throw std::runtime_error("no progress");
            for (std::size_t i = 0; i < progress.written; ++i)
                result += static_cast<Unit>(target[i]);
            piece = piece.subspan(progress.read);
        }
    }
    return result;
}

TEST(MEncoding, PiecesGiveTheTextOfTheWhole)
{
    std::minstd_rand random(3);
    for (const MEncoding::Codec* const codec : AllCodecs())
    {
        const auto decode = [codec](MCodecState& state, auto from, auto to)
        { return codec->DecodeSome(state, from, to); };
        const auto encode = [codec](MCodecState& state, auto from, auto to)
        { return codec->EncodeSome(state, from, to); };
        const std::string bytes = RandomBytes(random, 300);
        const std::u16string units = RandomUnits(random, 300);
        const auto wholeText = InPieces<char16_t>(Bytes(bytes), 1000, 1000, decode);
        const auto wholeBytes =
            InPieces<char>(std::span<const char16_t>(units), 1000, 2000, encode);
        for (std::size_t pieceSize = 1; pieceSize < 40; ++pieceSize)
            for (const std::size_t room : {2u, 3u, 17u, 400u})
            {
                ASSERT_EQ(InPieces<char16_t>(Bytes(bytes), pieceSize, room, decode), wholeText)
                    << codec->GetName().ToUTF8() << ", " << pieceSize << ", " << room;
                ASSERT_EQ(
                    InPieces<char>(std::span<const char16_t>(units), pieceSize, room + 6, encode),
                    wholeBytes)
                    << codec->GetName().ToUTF8() << ", " << pieceSize << ", " << room;
            }
    }
}

TEST(MEncoding, FindsCodecsByAnyNameInAnyCase)
{
    struct Case
    {
        const char* name;
        const char* expected;
    };
    constexpr Case Cases[] = {
        {"", "ascii"},
        {"UTF-8", "utf8"},
        {"utf8", "utf8"},
        {"Utf-16", "utf16"},
        {"UTF16", "utf16"},
        {"koi8-ru", "KOI8-U"},
        {"Latin2", "ISO-8859-2"},
        {"iso-8859-6-i", "ISO-8859-6"},
        {"ASMO-708", "ISO-8859-6"},
        {"iso 8859-8-I", "ISO-8859-8"},
        {"ISO-8859-10:1992", "ISO-8859-10"},
        {"iso-8859-1", "windows-1252"},
        {"cp1252", "windows-1252"},
        {"WINDOWS-1258", "windows-1258"},
        {"cp866", "IBM866"},
        {"apple roman", "Apple Roman"},
        {"HP-Roman8", "roman8"},
    };
    for (const Case& row : Cases)
        EXPECT_EQ(Units(MEncoding::GetCodec(row.name).GetName()), Units(row.expected)) << row.name;

    std::set<std::u16string> names;
    for (const MEncoding::TableCodec& codec : MEncoding::TableCodec::All())
        for (const char* const name : codec.GetTable().names)
            if (name != nullptr)
            {
                EXPECT_EQ(&MEncoding::GetCodec(name), &codec) << name;
                EXPECT_TRUE(names.insert(Units(name)).second) << name;
            }
    EXPECT_EQ(names.size(), 72u);
}

TEST(MEncoding, NamesThatAreUnknownAreRefused)
{
    for (const char* const name : {"ebcdic", "utf-32", "windows-1259", " utf8"})
        try
        {
            MEncoding::GetCodec(name);
            ADD_FAILURE() << name;
        }
        catch (const MException& failure)
        {
            EXPECT_EQ(failure.text.ToUTF8(),
                      "No codec found for encoding " + std::string(name) + ".");
            EXPECT_EQ(failure.code, 256);
        }
}

TEST(MEncoding, SingleBytesAndUnitsStayWhatTheyAre)
{
    const MEncoding::Codec& ascii = MEncoding::GetCodec("");
    EXPECT_EQ(Units(ascii.Decode(Bytes("a\xE9\xFF"))), u"a\u00E9\u00FF");
    EXPECT_EQ(Chars(ascii.Encode(MString::FromUTF16(u"a\u0141\u00E9"), true)), "aA\xE9\0"s)
        << "the low byte of each";

    const MEncoding::Codec& utf16 = MEncoding::GetCodec("utf16");
    EXPECT_EQ(Chars(utf16.Encode("A", true)), "A\0\0\0"s);
    EXPECT_EQ(Units(utf16.Decode(Bytes("\x3D\xD8\x00\xDE\xAC\x20x"s))), u"\U0001F600\u20AC")
        << "and a half unit";
}

TEST(MEncoding, OnlyUTF16HasAHeader)
{
    for (const MEncoding::Codec* const codec : AllCodecs())
    {
        BytesStream stream;
        codec->WriteHeader(stream);
        const bool isUTF16 = codec == &MEncoding::UTF16Codec::Get();
        EXPECT_EQ(stream.bytes, isUTF16 ? "\xFF\xFE" : "") << codec->GetName().ToUTF8();
        codec->ReadHeader(stream);
        EXPECT_EQ(stream.position, stream.bytes.size());
    }
    for (const char* const header : {"", "\xFF", "\xFE\xFF", "ab"})
        try
        {
            BytesStream stream(header);
            MEncoding::UTF16Codec::Get().ReadHeader(stream);
            ADD_FAILURE() << header;
        }
        catch (const MException& failure)
        {
            EXPECT_EQ(failure.text.ToUTF8(), "Invalid UTF8 header.");
            EXPECT_EQ(failure.code, 256);
        }
}

TEST(MTextStream, LinesComeBackThroughAnyBuffer)
{
    const std::u16string longLine(1000, u'\u00E9');
    const std::vector<std::u16string> lines = {
        u"first", u"", u"62 " + std::u16string(61, u'b'), longLine, std::u16string(64, u'c'),
        u"last"};
    for (const char* const name : {"", "utf8", "utf16", "windows-1252"})
        for (const std::size_t capacity : {1u, 2u, 3u, 64u, 1024u})
        {
            const MEncoding::Codec& codec = MEncoding::GetCodec(name);
            BytesStream stream;
            MTextStream target(stream, capacity);
            for (const std::u16string& line : lines)
                codec.WriteLine(target, MString::FromUTF16(line));
            EXPECT_TRUE(stream.bytes.size() % capacity == 0) << "only full buffers are sent";
            target.Flush();

            MTextStream source(stream, capacity);
            MString read = "what was there before";
            for (const std::u16string& line : lines)
            {
                codec.ReadLine(source, read);
                EXPECT_EQ(Units(read), line) << name << ", " << capacity;
            }
            EXPECT_THROW(codec.ReadLine(source, read), MException);
        }
}

TEST(MTextStream, LinesEndAtLFOrNULAndHaveNoCR)
{
    BytesStream stream("one\r\n\rt\rwo\r\n\r\nthree\0\xE2\x82\nfour\r"s);
    MTextStream source(stream, 7);
    MString line;
    for (const std::u16string_view expected : {u"one", u"two", u"", u"three", u"\1", u"four"})
    {
        MEncoding::UTF8Codec::Get().ReadLine(source, line);
        EXPECT_EQ(Units(line), expected);
    }
    try
    {
        MEncoding::UTF8Codec::Get().ReadLine(source, line);
        ADD_FAILURE();
    }
    catch (const MException& failure)
    {
        EXPECT_EQ(failure.text.ToUTF8(), "No more data in source stream.");
        EXPECT_EQ(failure.code, 256);
    }
}

} // namespace
