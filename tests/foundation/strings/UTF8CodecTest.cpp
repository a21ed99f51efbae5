#include <random>

#include <gtest/gtest.h>

#include "foundation/strings/Codecs.h"
#include "foundation/strings/FileNames.h"
#include "tests/foundation/strings/Bytes.h"

namespace
{

using namespace std::string_view_literals;

const MEncoding::Codec& UTF8 = MEncoding::UTF8Codec::Get();

TEST(UTF8Codec, ReadsWhatIsBrokenWithPatience)
{
    struct Case
    {
        const char* what;
        std::string_view bytes;
        std::u16string_view expected;
    };
    const Case cases[] = {
        {"nothing", "", u""},
        {"one byte each", "A~\x7F", u"A~\x7F"},
        {"two bytes", "\xC2\x80\xC3\xA9\xDF\xBF", u"\x80\u00E9\u07FF"},
        {"three bytes", "\xE0\xA0\x80\xE2\x82\xAC\xEF\xBF\xBF", u"\u0800\u20AC\uFFFF"},
        {"four bytes", "\xF0\x90\x80\x80\xF0\x9D\x84\x9E\xF4\x8F\xBF\xBF",
         u"\U00010000\U0001D11E\U0010FFFF"},
        {"marks anywhere", "\xEF\xBB\xBF<\xEF\xBB\xBF>\xEF\xBB\xBF", u"<>"},
        {"a NUL ends", "ab\0cd"sv, u"ab"},
        {"no lead bytes", "a\x80\xBF\xF8\xFB\xFC\xFE\xFFz", u"az"},
        {"a letter in the place of a continuation", "\xC3(x", u"\1(x"},
        {"the same behind two bytes", "\xE2\x82-\xF0\x9D\x84-", u"\1-\1-"},
        {"a lead in the place of a continuation", "\xE2\xC3\xA9", u"\1\u00E9"},
        {"a lead that is none there", "\xE2\xFFz", u"\1z"},
        {"a NUL there", "\xE2\x82\0z"sv, u"\1"},
        {"ended by the data", "a\xF0\x9D\x84", u"a"},
        {"longer than needed", "\xC0\x80.\xC1\xBF.\xE0\x9F\xBF.\xF0\x8F\xBF\xBF", u"\1.\1.\1.\1"},
        {"beyond the last character", "\xF4\x90\x80\x80.\xF7\xBF\xBF\xBF", u"\1.\1"},
        {"surrogates", "\xED\x9F\xBF.\xED\xA0\x80.\xED\xBF\xBF.\xEE\x80\x80",
         u"\uD7FF.\1.\1.\uE000"},
        {"more than one round", "0123456789abcdef0123456789abcde\xC3\xA9 0123456789abcdef",
         u"0123456789abcdef0123456789abcde\u00E9 0123456789abcdef"},
    };
    for (const Case& row : cases)
        EXPECT_EQ(Units(UTF8.Decode(Bytes(row.bytes))), row.expected) << row.what;
}

TEST(UTF8Codec, WritesPairsAndEscapesAndDropsHalves)
{
    struct Case
    {
        const char* what;
        std::u16string text;
        std::string_view expected;
    };
    const Case cases[] = {
        {"all lengths", u"\x7F\x80\u07FF\u0800\uFFFF\U00010000\U0010FFFF",
         "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
        {"a mark", u"\uFEFF", "\xEF\xBB\xBF"},
        {"a low half alone", {u'a', 0xDC00, u'b'}, "ab"},
        {"a high half takes along what follows", {u'a', 0xD834, u'b', u'c'}, "ac"},
        {"even another high half", {0xD834, 0xD834, 0xDD1E, u'c'}, "c"},
        {"a high half at the end", {u'a', 0xD834}, "a"},
        {"below the escapes", u"\U0010FE00", "\xF4\x8F\xB8\x80"},
        {"escapes", u"\U0010FE01\U0010FE80\U0010FEFF", "\x01\x80\xFF"},
        {"above the escapes", u"\U0010FF00", "\xF4\x8F\xBC\x80"},
    };
    for (const Case& row : cases)
    {
        const MString text = MString::FromUTF16(row.text);
        EXPECT_EQ(Chars(UTF8.Encode(text, false)), row.expected) << row.what;
        EXPECT_EQ(text.ToUTF8(), row.expected) << row.what;
        EXPECT_EQ(Chars(UTF8.Encode(text, true)), std::string(row.expected) + '\0') << row.what;
    }
    const std::string characters = "na\xC3\xAFve";
    EXPECT_EQ(MString(characters.c_str()).ToUTF8(), "na\xEF\xBF\x83\xEF\xBE\xAFve")
        << "a literal's bytes are characters with the sign extended";
    EXPECT_EQ(MString::FromUTF8(characters).ToUTF8(), characters);
}

TEST(UTF8Codec, EveryCharacterComesBack)
{
    for (char32_t code = 1; code <= 0x10FFFF; ++code)
    {
        if ((code >= 0xD800 && code < 0xE000) || code == 0xFEFF ||
            (code >= 0x10FE01 && code <= 0x10FEFF))
            continue;
        std::u16string text;
        if (code > 0xFFFF)
            text += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
        text += static_cast<char16_t>(code > 0xFFFF ? 0xDC00 + (code & 0x3FF) : code);
        ASSERT_EQ(Units(MString::FromUTF8(MString::FromUTF16(text).ToUTF8())), text)
            << static_cast<std::uint32_t>(code);
    }
}

TEST(FileNames, AnyBytesComeBackExactly)
{
    for (const std::string_view name :
         {"plain.xml"sv, "r\xC3\xA9sum\xC3\xA9.txt"sv, "\xFF\xFE"sv, "\xC3"sv, "\xE2\x82"sv,
          "\xED\xA0\x80"sv, "\xEF\xBB\xBF name"sv, "\xC0\x80"sv,
          "\xF4\x8F\xBA\x80 written out as an escape"sv, "\xF0\x9D\x84\x9E"sv})
        EXPECT_EQ(FileNameToBytes(FileNameFromBytes(name)), name);

    EXPECT_EQ(Units(FileNameFromBytes("r\xC3\xA9.\xE9")), u"r\u00E9.\U0010FEE9");

    std::minstd_rand random(1);
    for (int i = 0; i < 20'000; ++i)
    {
        // Mostly of what sequences are made of, so that many are nearly right.
        constexpr std::string_view Alphabet = "a\x80\x8F\xBA\xBF\xC3\xE2\xED\xEF\xF0\xF4\xFF";
        std::string name;
        for (auto k = random() % 12; k > 0; --k)
            name += Alphabet[random() % Alphabet.size()];
        ASSERT_EQ(FileNameToBytes(FileNameFromBytes(name)), name);
    }
}

} // namespace
