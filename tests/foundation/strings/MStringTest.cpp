#include "foundation/strings/MString.h"

#include <algorithm>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "tests/foundation/strings/Bytes.h"

namespace
{

TEST(MString, LiteralsAndNullCostNothingAndReadBack)
{
    EXPECT_EQ(MString().Length(), 0);
    EXPECT_EQ(MString(nullptr).ToUTF8(), "");
    const MString text = "Wet";
    EXPECT_EQ(text.Length(), 3);
    EXPECT_EQ(text.CharAt(1), u'e');
    EXPECT_EQ(text.CharAt(3), 0);
    EXPECT_EQ(text.CharAt(-1), 0);
}

TEST(MString, AChangeIsSeenByNoOtherHolder)
{
    MString first = "gain";
    first.Append(u'1');
    const MString second = first;
    first.Append(" dB");
    MString third = second;
    third.Insert(0, "-");
    EXPECT_EQ(first.ToUTF8(), "gain1 dB");
    EXPECT_EQ(second.ToUTF8(), "gain1");
    EXPECT_EQ(third.ToUTF8(), "-gain1");
}

TEST(MString, InsertsAndAppendsItself)
{
    MString text = MString::FromInteger(123);
    text.Insert(1, text);
    EXPECT_EQ(text.ToUTF8(), "112323");
    text.Append(text);
    EXPECT_EQ(text.ToUTF8(), "112323112323");
    text.Insert(1000, "!");
    text.Insert(-5, "?");
    EXPECT_EQ(text.ToUTF8(), "?112323112323!");
}

TEST(MString, GrowsThroughManyAppends)
{
    MString text;
    std::string expected;
    for (int i = 0; i < 5000; ++i)
    {
        text.Append(static_cast<char16_t>(u'a' + i % 26));
        expected += static_cast<char>('a' + i % 26);
    }
    EXPECT_EQ(text.ToUTF8(), expected);
}

TEST(MString, MidCutsToTheText)
{
    struct Case
    {
        int position, count;
        const char* expected;
    };
    constexpr Case Cases[] = {{0, 3, "Fre"}, {3, 1000, "quency"}, {0, 1000, "Frequency"},
                              {9, 1, ""},    {-1, 3, ""},         {2, 0, ""}};
    MString shared = MString::FromUTF8("Frequency");
    for (const MString& text : {MString("Frequency"), shared})
        for (const Case& row : Cases)
            EXPECT_EQ(text.Mid(row.position, row.count).ToUTF8(), row.expected)
                << row.position << ", " << row.count;
}

TEST(MString, ComparesWithoutCaseAndDiacritics)
{
    EXPECT_EQ(MString::FromUTF8("R\xC3\xA9sum\xC3\xA9").Compare("RESUME"), 0);
    EXPECT_EQ(MString::FromUTF8("\xC7\xA8\xE1\xBA\xA4").Compare("ka"), 0) << "two marks on one";
    EXPECT_EQ(MString::FromUTF16(u"\u0385\u1F8D\uFB4E")
                  .Compare(MString::FromUTF16(u"\u00A8\u0391\u05E4")),
              0)
        << "to the base of the base, in the same case";
    EXPECT_NE(MString::FromUTF16(u"\u0391").Compare(MString::FromUTF16(u"\u03B1")), 0)
        << "only A to Z have a lower case";
    EXPECT_NE(MString::FromUTF16(u"\u00DF").Compare("ss"), 0);
    EXPECT_NE(MString::FromUTF16(u"\u00C6").Compare("A"), 0);
    EXPECT_EQ(MString("b").Compare("\xE9"), u'b' - 0xFFE9) << "literals have the sign extended";
    EXPECT_TRUE(MString("Frequency") == MString::FromUTF8("fREQUENCY"));
    EXPECT_LT(MString("Dry").Compare("wet"), 0);
    EXPECT_GT(MString("wet").Compare("Dry"), 0);
    EXPECT_GT(MString("Wetter").Compare("Wet"), 0);
    EXPECT_LT(MString("").Compare("a"), 0);
}

TEST(MString, ComparesLongTextsAsCharacterByCharacter)
{
    constexpr std::string_view Alphabet = "aAzZ@[`{\xE0 0"; // the neighbours of letters too
    const auto lower = [](char character)
    {
        const bool isUpper = character >= 'A' && character <= 'Z';
        return static_cast<signed char>(isUpper ? character + 32 : character);
    };
    std::minstd_rand random(2);
    for (int i = 0; i < 20'000; ++i)
    {
        std::string a;
        while (a.size() < static_cast<std::size_t>(i % 41))
            a += Alphabet[random() % Alphabet.size()];
        std::string b = a;
        for (char& character : b)
            if (lower(character) != character && random() % 2 == 0)
                character = static_cast<char>(lower(character));
        if (!b.empty() && i % 3 != 0)
            b[random() % b.size()] = Alphabet[random() % Alphabet.size()];
        if (i % 5 == 0)
            b.resize(random() % (b.size() + 1));

        const auto [first, second] = std::ranges::mismatch(a, b, {}, lower, lower);
        const int expected = (first == a.end() ? 0 : static_cast<char16_t>(lower(*first))) -
                             (second == b.end() ? 0 : static_cast<char16_t>(lower(*second)));
        const MString narrow = a.c_str();
        const MString wide = MString::FromNarrow(a);
        ASSERT_EQ(narrow.Compare(b.c_str()), expected) << a << ", " << b;
        ASSERT_EQ(wide.Compare(b.c_str()), expected) << a << ", " << b;
        ASSERT_EQ(narrow.Compare(MString::FromNarrow(b)), expected) << a << ", " << b;
        ASSERT_EQ(wide.Compare(MString::FromNarrow(b)), expected) << a << ", " << b;
    }
}

TEST(MString, ComparesParts)
{
    struct Case
    {
        int position, otherPosition, maxCount, expected;
    };
    constexpr Case Cases[] = {
        {4, 0, 9, -'w'},      {4, 0, 4, 0}, {0, 0, 9, 'l' - 'p'}, {0, 0, 0, 0},
        {5, 0, 2, 'a' - 'p'}, {2, 4, 1, 0}, {2, 4, 2, '-' - 'o'}, {9, 0, 5, -'p'},
        {99, 99, 5, 0},       {6, 2, 2, 0}, {6, 2, 3, -'w'},
    };
    const MString text = MString::FromNarrow("low-Pass");
    for (const Case& row : Cases)
        EXPECT_EQ(text.Compare(row.position, "pASSwo", row.otherPosition, row.maxCount),
                  row.expected)
            << row.position << ", " << row.otherPosition << ", " << row.maxCount;
    std::u16string ended(20, u'x');
    ended[4] = 0;
    const MString first = MString::FromUTF16(ended);
    ended.back() = u'y';
    EXPECT_EQ(first.Compare(MString::FromUTF16(ended)), 0) << "both end at a terminator";
}

TEST(MString, HashesByItsThinSampling)
{
    struct Case
    {
        const char* text;
        std::int32_t expected;
    };
    // 'a' is 97, 'b' 98, 'c' 99, 'z' 122.
    constexpr Case Cases[] = {
        {"", 0},
        {"a", 97},
        {"A", 97},
        {"ab", 97 ^ 98 << 1},
        {"aBc", 97 ^ 98 << 1 ^ 99 << 2},
        {"\xE9", 0xE9 - 256},
        {"@@@@@@@@@@@@@@a", (64 * ((1 << 14) - 1)) ^ 97 << 14},
        {"abcdzbcdabcdabcd", 97},
        {"abcdzbcdabcdabcdabc", 97},
        {"abcdzbcdabcdabcdabcd", 97 ^ 122 << 4},
        {"ABCDZ...................................", 97 ^ 122 << 4},
    };
    for (const Case& row : Cases)
    {
        EXPECT_EQ(MString(row.text).Hash(), row.expected) << row.text;
        EXPECT_EQ(MString::FromNarrow(row.text).Hash(), row.expected) << row.text;
    }
}

TEST(MString, FindsCharactersFromEitherEnd)
{
    for (const MString& text : {MString("banana"), MString::FromNarrow("banana")})
    {
        EXPECT_EQ(text.Find(u'a'), 1);
        EXPECT_EQ(text.Find(u'a', 2), 3);
        EXPECT_EQ(text.Find(u'b', -7), 0);
        EXPECT_EQ(text.Find(u'A'), -1);
        EXPECT_EQ(text.Find(u'a', 6), -1);
        EXPECT_EQ(text.FindLast(u'n', 100), 4);
        EXPECT_EQ(text.FindLast(u'n', 3), 2);
        EXPECT_EQ(text.FindLast(u'n', 1), -1);
        EXPECT_EQ(text.FindLast(u'b', 0), 0);
        EXPECT_EQ(text.FindLast(u'b', -1), -1);
    }
    for (int place = 0; place < 100; ++place)
    {
        std::string text(100, 'x');
        text[static_cast<std::size_t>(place)] = 'y';
        for (const MString& searched : {MString(text.c_str()), MString::FromNarrow(text)})
        {
            EXPECT_EQ(searched.Find(u'y', place / 2), place);
            EXPECT_EQ(searched.Find(u'y', place + 1), -1);
        }
    }
    EXPECT_EQ(MString("\xE9").Find(0xFFE9), 0);
    EXPECT_EQ(MString().FindLast(u'a', 0), -1);
}

TEST(MString, ErasesWhatThereIs)
{
    struct Case
    {
        int position, count;
        const char* expected;
    };
    constexpr Case Cases[] = {{0, 2, "lay"},   {1, 1, "Dlay"},   {3, 99, "Del"},  {0, 99, ""},
                              {5, 1, "Delay"}, {-1, 2, "Delay"}, {2, 0, "Delay"}, {2, -1, "Delay"}};
    for (const Case& row : Cases)
    {
        const MString original = MString::FromNarrow("Delay");
        for (MString text : {MString("Delay"), original})
        {
            text.Erase(row.position, row.count);
            EXPECT_EQ(text.ToUTF8(), row.expected);
        }
        EXPECT_EQ(original.ToUTF8(), "Delay");
    }
}

TEST(MString, ReplacesCharactersByTexts)
{
    MString text = "a-b--c-";
    EXPECT_EQ(text.ReplaceChar(u'-', "<->"), 4);
    EXPECT_EQ(text.ToUTF8(), "a<->b<-><->c<->") << "what was put in is passed over";
    EXPECT_EQ(text.ReplaceChar(u'>', ""), 4);
    EXPECT_EQ(text.ToUTF8(), "a<-b<-<-c<-");
    EXPECT_EQ(text.ReplaceChar(u'x', "y"), 0);
    MString own = MString::FromNarrow("xy");
    EXPECT_EQ(own.ReplaceChar(u'x', own), 1);
    EXPECT_EQ(own.ToUTF8(), "xyy");
}

TEST(MString, ChangesCaseAndWhiteSpace)
{
    EXPECT_EQ(MString::FromUTF8("az\xC3\xA9`{").ToUpper().ToUTF8(), "AZ\xC3\xA9`{");
    MString blanks = "\t a\r\nb\x1F!";
    blanks.NormalizeWhitespace();
    EXPECT_EQ(blanks.ToUTF8(), "  a  b !");
}

TEST(MString, ScoresTheWordsThatAQueryTouches)
{
    struct Case
    {
        const char* text;
        const char* query;
        int expected;
    };
    constexpr Case Cases[] = {
        {"Low pass", "PASSWORD", 4}, {"Low pass", "lo", 2}, {"Low pass", "pa lo", 4},
        {"Low pass", "ass", 0},      {"Low pass", "", 0},   {"", "low", 0},
        {"low-low", "slow", 6},      {"a1a", "a", 2},       {"filter", "fi filt", 4},
    };
    for (const Case& row : Cases)
        EXPECT_EQ(MString(row.text).MatchScore(row.query), row.expected)
            << row.text << ", " << row.query;
}

TEST(MString, AppendsItsOwnCharacters)
{
    MString text = MString::FromNarrow("abcdefgh");
    for (int i = 0; i < 6; ++i)
        text.WithCharacters(
            [&text](auto characters)
            {
                if constexpr (sizeof(characters[0]) == sizeof(char16_t))
                    text.AppendChars({characters.data() + 1, characters.size() - 1});
            });
    // Each round adds all but the first character: 2n - 1.
    EXPECT_EQ(text.Length(), 7 * 64 + 1);
    for (int i = 0; i < text.Length(); ++i)
        ASSERT_EQ(text.CharAt(i), i == 0 ? u'a' : u'b' + (i - 1) % 7);
}

TEST(MString, MakesTextsOfAnySource)
{
    EXPECT_EQ(Units(MString::FromNarrow("a\xE9")), std::u16string({u'a', 0xFFE9}));
    EXPECT_EQ(Units(MString::FromUTF16(u"a\u20AC")), u"a\u20AC");
    EXPECT_EQ(Units(MString::FromCharacter(0xFFFF)), u"\uFFFF");
    EXPECT_EQ(MString::Print("%d of %s", 3, "four").ToUTF8(), "3 of four");
    EXPECT_EQ(MString::Print("%9000s", "").Length(), 8191);
    MString fill = "x";
    fill.AppendFill(3, u'-');
    fill.AppendFill(-3, u'+');
    EXPECT_EQ(fill.ToUTF8(), "x---");
    fill.Clear();
    EXPECT_TRUE(fill.IsEmpty());
}

TEST(MString, SharesItsWholeAndNothingElse)
{
    const MString text = MString::FromNarrow("Frequency");
    const auto address = [](const MString& of)
    {
        return of.WithCharacters([](auto characters)
                                 { return static_cast<const void*>(characters.data()); });
    };
    EXPECT_EQ(address(text.Mid(0, 1000)), address(text));
    EXPECT_NE(address(text.Mid(0, 8)), address(text));
    const MString literal = "Dry";
    EXPECT_EQ(address(literal.Mid(0, 3)), address(literal));
}

TEST(MString, RefusesToGrowBeyondTheLimit)
{
    MString text = "x";
    try
    {
        text.AppendFill(1 << 30, u'x');
        ADD_FAILURE();
    }
    catch (const MException& failure)
    {
        EXPECT_EQ(failure.text.ToUTF8(), "String is too long.");
        EXPECT_EQ(failure.code, 2);
    }
    EXPECT_EQ(text.ToUTF8(), "x");
}

TEST(MStringThreads, HoldersOnSeveralThreadsShareOneText)
{
    const MString text = MString::FromUTF8("shared by all");
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t)
        threads.emplace_back(
            [&text]
            {
                for (int i = 0; i < 2000; ++i)
                {
                    MString mine = text;
                    mine.Append(u'!');
                    EXPECT_EQ(mine.Length(), text.Length() + 1);
                }
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(text.ToUTF8(), "shared by all");
}

} // namespace
