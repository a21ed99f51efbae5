#include "foundation/xml/MXMLParser.h"

#include <string>

#include <gtest/gtest.h>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MXMLItem.h"
#include "tests/foundation/xml/Trees.h"

namespace
{

struct ParseCase
{
    const char* source;
    const char* expected; ///< a tree as Outline shows it, or the text of the failure
};

void ExpectEach(std::span<const ParseCase> cases)
{
    for (const ParseCase& row : cases)
        EXPECT_EQ(Parsed(row.source), row.expected) << row.source;
}

TEST(MXMLParser, TakesWhatStrictParsersRefuse)
{
    constexpr ParseCase Cases[] = {
        {"<a/>", "a"},
        {"<a></a>", "a"},
        {"<a b=c/>", "a b=[c]"},
        {"<a b=c d=e/>", "a b=[c] d=[e]"},
        {"<a b='1'/>", "a b=['1']"},
        {"<a b = \"1\" />", "a b=[1]"},
        {"<a b=\"\"/>", "a b=[]"},
        {"<a b=/>", "a b=[]"},
        {"<a b=\" x \"/>", "a b=[ x ]"},
        {"<a b=\"<>/!=\"/>", "a b=[<>/!=]"},
        {"<a b=\"1\" B=\"2\"/>", "a b=[2]"},
        {"<a z=\"1\" b=\"2\" Z=\"3\" B=\"4\"/>", "a b=[4] z=[3]"},
        {"<a.b:c-d_e?/>", "a.b:c-d_e?"},
        {"<a></A>", "a"},
        {"<a></a junk>", "a"},
        {"<a / >", "a"},
        {"<a>", "a"},
        {"<a><b>x", "a{b(x)}"},
        {"<a/>anything < at all", "a"},
        {"<a/><b/>", "a"},
        {"  \n<a/>", "a"},
        {"<!-- <b> -- > --><a/>", "a"},
        {"<! - <b> --><a/>", "a"},
        {"<!--><a/>--><b/>", "b"},
        {"<!DOCTYPE any><a/>", "a"},
        {"<![IGNORE[x]>y</>", "Text outside of any element."},
        {"<a><![CDATA[ <x>  &amp; ]]]></a>", "a( <x>  &amp; ])"},
        {"<a><! [cdata[x]]></a>", "a(x)"},
        {"<a><![CDATA[x", "a(x)"},
        {"<?xml version=\"1.0\"?><a/>", "a"},
        {"<?xml?><a/>", "a"},
        {"<a><?php b=\"c\" ?><b/></a>", "a{b}"},
        {"\xEF\xBB\xBF<a/>", "a"},
    };
    ExpectEach(Cases);
}

TEST(MXMLParser, CollectsText)
{
    constexpr ParseCase Cases[] = {
        {"<a>x  y\n z</a>", "a(x y z)"},           {"<a> x </a>", "a( x)"},   {"<a>\t\n</a>", "a"},
        {"<a>x<b/>y<b/> z</a>", "a(x y  z){b,b}"}, {"<a>x&#10;</a>", "a(x)"},
    };
    ExpectEach(Cases);
}

TEST(MXMLParser, DecodesSixEntitiesInAnyCase)
{
    constexpr ParseCase Cases[] = {
        {"<a>&amp;&lt;&gt;&apos;&quot;&#10;.</a>", "a(&<>'\"\n.)"},
        {"<a>&AMP;</a>", "a(&)"},
        {"<a>&#65;</a>", "a(&#65;)"},
        {"<a>&amp;lt;</a>", "a(&lt;)"},
        {"<a>&ltx;</a>", "a(<;)"},
        {"<a>x&</a>", "a(x&)"},
        {"<a>x&lt</a>", "a(x<)"},
        {"<a>&am</a>", "a(&am)"},
        {"<a b=\"&quot;&#10;\"/>", "a b=[\"\n]"},
        {"<a b=&lt;/>", "a b=[<]"},
    };
    ExpectEach(Cases);
}

TEST(MXMLParser, TellsWhatIsWrong)
{
#define INVALID "Invalid file contents. "
    constexpr ParseCase Cases[] = {
        {"", "The XML does not contain any elements."},
        {"<!-- only -->", "The XML does not contain any elements."},
        {"text<a/>", "Text outside of any element."},
        {"<", INVALID "No element name found."},
        {"< a/>", INVALID "No element name found."},
        {"<<a/>", INVALID "No element name found."},
        {"<=", INVALID "No element name found."},
        {"</a>", INVALID "Invalid closing element name."},
        {"<a><b></a></b>", INVALID "Invalid closing element name."},
        {"<a></a", INVALID "Invalid closing element syntax."},
        {"<a></a=>", INVALID "Invalid closing element syntax."},
        {"<a /b>", INVALID "Invalid element finishing sequence."},
        {"<a b=\"1\"", INVALID "Special character found where attribute expected."},
        {"<a =\"1\">", INVALID "Special character found where attribute expected."},
        {"<a <b/>", INVALID "Special character found where attribute expected."},
        {"<a b>", INVALID "Invalid character found where attribute expected."},
        {"<a b c=\"1\">", INVALID "Invalid character found where attribute expected."},
        {"<a b='x y'/>", INVALID "Invalid character found where attribute expected."},
        {"<?xml ?x", INVALID "Invalid character found where attribute expected."},
        {"<?xml ? x>", INVALID "Invalid special element sequence."},
        {"<a b=\"1/>", INVALID "No ending delimiter found."},
        {"<?xml encoding=\"runes\"?><a/>", "No codec found for encoding runes."},
    };
#undef INVALID
    ExpectEach(Cases);
}

TEST(MXMLParser, ReadsTheSameWhereverThePiecesOfTheSourceEnd)
{
    // Blanks before it move the text across the borders of the pieces, which are 1024 bytes long.
    const std::string text = "<root first=\"&amp;\xC3\xA9\" second=two><![CDATA[<x>]]> y  z"
                             "<!-- c --><sub/></root>";
    const std::string expected = Parsed(text);
    for (std::size_t blanks = 1024 - text.size() - 1; blanks < 1026; ++blanks)
        ASSERT_EQ(Parsed(std::string(blanks, ' ').append(text)), expected) << blanks;
}

TEST(MXMLParser, SwitchesTheCodecBehindTheDeclaration)
{
    // 0xE9 is U+0449 in ISO-8859-5. Before the switch it is the start of a sequence.
    std::string text = "<?xml version=\"1.0\" encoding=\"ISO-8859-5\"?><a b=\"\xE9\"/>";
    EXPECT_EQ(Parsed(text), "a b=[\xD1\x89]");
    // With the declaration astride two pieces.
    for (std::size_t blanks = 970; blanks < 1030; ++blanks)
        ASSERT_EQ(Parsed(std::string(blanks, ' ').append(text)), "a b=[\xD1\x89]") << blanks;

    std::string wide = "\xFF\xFE";
    for (const char character : std::string("<?xml encoding=\"utf-16\"?><a b=\"x\"/>"))
        wide.append(1, character).append(1, '\0');
    EXPECT_EQ(Parsed(wide), "a b=[x]");
}

TEST(MXMLParser, RefusesWhatIsBeyondItsLimits)
{
    struct Case
    {
        const char* within;
        const char* beyond;
        const char* failure;
    };
    constexpr Case Cases[] = {
        {"<a><b><c/></b></a>", "<a><b><c><d/></c></b></a>", "Elements are nested too deeply."},
        {"<a><b/><b/><b/></a>", "<a><b/><b/><b/><b/></a>", "Too many elements."},
        {"<a b=1 c=2/>", "<a b=1 c=2 c=3/>", "Too many attributes."},
        {"<abcde/>", "<abcdef/>", "Name is too long."},
        {"<a bcdef=1/>", "<a bcdefg=1/>", "Name is too long."},
        {"<a b=1234567/>", "<a b=12345678/>", "Text is too long."},
        {"<a b=\"1234567\"/>", "<a b=\"12345678\"/>", "Text is too long."},
        {"<a>1234567</a>", "<a>12345678</a>", "Text is too long."},
        {"<a>123<b/>456</a>", "<a>123<b/>4567</a>", "Text is too long."},
        {"<a><![CDATA[1234567]]></a>", "<a><![CDATA[12345678]]></a>", "Text is too long."},
    };
    const MMLLimits small{
        .depth = 3, .items = 4, .attributes = 2, .nameCharacters = 5, .textCharacters = 7};
    for (const Case& row : Cases)
    {
        EXPECT_NE(ParsedWithin(small, row.within).substr(0, 7), "Invalid") << row.within;
        EXPECT_EQ(ParsedWithin(small, row.beyond),
                  std::string("Invalid file contents. ") + row.failure)
            << row.beyond;
    }
}

TEST(MXMLParser, StopsAtTheLimitsOfTheSystem)
{
    const auto nested = [](int depth)
    {
        std::string text;
        for (int i = 0; i < depth; ++i)
            text += "<a>";
        return text;
    };
    EXPECT_EQ(Parsed(nested(512)).find("Invalid"), std::string::npos);
    EXPECT_EQ(Parsed(nested(513)), "Invalid file contents. Elements are nested too deeply.");
}

TEST(MXMLParser, ReadsTensOfThousandsOfUnsortedAttributesQuickly)
{
    std::string text = "<a";
    for (int i = limits::XMLAttributes; i-- > 0;)
        text.append(" n").append(std::to_string(i)).append("=1");
    text += "/>";
    MXMLItem item("");
    MMemoryStream stream(std::as_bytes(std::span(text)));
    item.Load(stream);
    ASSERT_EQ(item.GetAttributes().size(), limits::XMLAttributes);
    EXPECT_EQ(item.GetAttribute("N4095", ""), "1");
}

} // namespace
