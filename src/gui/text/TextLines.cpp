#include "gui/text/TextLines.h"

#include <cstdint>
#include <utility>

namespace
{

bool IsWhite(char16_t character) noexcept
{
    return character <= u' ';
}

/// Finds the lines of one text from the start on.
class LineBreaker
{
public:
    LineBreaker(const MFont& usedFont, const MString& brokenText, int lineWidth)
        : font(usedFont),
          text(brokenText),
          width(lineWidth)
    {
    }
    LineBreaker(const LineBreaker&) = delete;
    LineBreaker& operator=(const LineBreaker&) = delete;

    std::vector<TextLine> Break()
    {
        for (int position = 0; position < text.Length();)
        {
            const int feed = text.Find(u'\n', position);
            const int end = feed >= 0 ? feed : text.Length();
            BreakParagraph(position, end);
            position = end + 1;
        }
        return std::move(lines);
    }

private:
    void BreakParagraph(int start, int end)
    {
        int lineStart = start;
        int lineEnd = start; // behind the last word that is on the line
        std::int64_t reach = 0;
        while (lineEnd < end)
        {
            const int wordStart = FindWord(lineEnd, end);
            const int wordEnd = FindWordEnd(wordStart, end);
            reach += font.MeasureSpaced(text, lineEnd, wordEnd - lineEnd);
            const bool isFirst = lineEnd == lineStart;
            if (!isFirst && wordStart < end && reach - font.GetSpace() > width)
            {
                AddLine(lineStart, lineEnd);
                lineStart = wordStart;
                reach = font.MeasureSpaced(text, wordStart, wordEnd - wordStart);
            }
            lineEnd = wordEnd;
        }
        AddLine(lineStart, end);
    }

    int FindWord(int position, int end) const noexcept
    {
        while (position < end && IsWhite(text.CharAt(position)))
            ++position;
        return position;
    }
    int FindWordEnd(int position, int end) const noexcept
    {
        while (position < end && !IsWhite(text.CharAt(position)))
            ++position;
        return position;
    }

    void AddLine(int start, int end)
    {
        lines.push_back({start, end - start, font.MeasureRun(text, start, end - start)});
    }

    const MFont& font;
    const MString& text;
    int width;
    std::vector<TextLine> lines;
};

} // namespace

std::vector<TextLine> BreakLines(const MFont& font, const MString& text, int width,
                                 bool isSingleLine)
{
    if (text.IsEmpty())
        return {};
    if (isSingleLine)
        return {{0, text.Length(), font.MeasureRun(text, 0, text.Length())}};
    return LineBreaker(font, text, width).Break();
}
