#include "gui/text/TextLines.h"

#include <gtest/gtest.h>

namespace
{

TEST(TextLines, BreakBeforeTheWordThatPassesTheWidth)
{
    const MFont font({.face = "DejaVu Sans Mono", .height = 20, .space = 2});
    const int advance = font.GetAdvance('x') + 2; // all characters have the same
    struct
    {
        const char* text;
        int columns;
        bool isSingleLine;
        std::vector<std::string> lines;
    } const cases[] = {
        {"", 5, false, {}},
        {"one two three", 13, false, {"one two three"}},
        {"one two three", 12, false, {"one two", "three"}},
        {"one two three", 5, false, {"one", "two", "three"}},
        {"one two three", 1, true, {"one two three"}},
        {"abcdefgh ij", 4, false, {"abcdefgh", "ij"}},
        {"a  b", 2, false, {"a", "b"}},
        {"  a b", 4, false, {"  a", "b"}},
        {"a b ", 3, false, {"a b "}}, // blanks at the end pass nothing
        {"a\nb c\n\nd", 9, false, {"a", "b c", "", "d"}},
        {"a\nb", 9, true, {"a\nb"}},
        {"a\tb", 6, false, {"a\tb"}}, // 1 + 4 + 1
        {"a\tb", 5, false, {"a", "b"}},
    };
    for (const auto& row : cases)
    {
        const MString text = MString::FromNarrow(row.text);
        std::vector<std::string> lines;
        for (const TextLine& line :
             BreakLines(font, text, row.columns * advance - 2, row.isSingleLine))
        {
            lines.push_back(text.Mid(line.first, line.count).ToUTF8());
            EXPECT_EQ(line.width, font.MeasureRun(text, line.first, line.count)) << row.text;
        }
        EXPECT_EQ(lines, row.lines) << row.text << " in " << row.columns;
    }
}

} // namespace
