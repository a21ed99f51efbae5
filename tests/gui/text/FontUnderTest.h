#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/modules/MResources.h"

/// The bytes of a font that can be read by its own tables, and changed.
class FontUnderTest
{
public:
    explicit FontUnderTest(const MString& resource)
    {
        const MMemoryStream stream = MResources::Open(resource);
        for (const std::byte byte : stream.GetData())
            bytes.push_back(std::to_integer<std::uint8_t>(byte));
    }

    std::vector<std::uint8_t> bytes;

    int Word(std::size_t at) const { return bytes.at(at) << 8 | bytes.at(at + 1); }
    int Signed(std::size_t at) const { return static_cast<std::int16_t>(Word(at)); }
    std::size_t Long(std::size_t at) const
    {
        return static_cast<std::size_t>(Word(at)) << 16U | static_cast<std::size_t>(Word(at + 2));
    }
    std::size_t Table(std::string_view tag) const
    {
        for (std::size_t at = 12; at < 12 + 16 * static_cast<std::size_t>(Word(4)); at += 16)
            if (std::equal(tag.begin(), tag.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at)))
                return Long(at + 8);
        return 0;
    }

    int UnitsPerEm() const { return Word(Table("head") + 18); }
    int Ascent() const { return Signed(Table("hhea") + 4); }
    int Descent() const { return -Signed(Table("hhea") + 6); }
    int LineGap() const { return Signed(Table("hhea") + 8); }

    /// By the segments of the table for the 16-bit plane.
    std::size_t GlyphOf(int code) const
    {
        const std::size_t map = Table("cmap");
        for (std::size_t at = map + 4; at < map + 4 + 8 * static_cast<std::size_t>(Word(map + 2));
             at += 8)
        {
            const std::size_t table = map + Long(at + 4);
            if (Word(table) != 4)
                continue;
            const auto doubled = static_cast<std::size_t>(Word(table + 6));
            for (std::size_t segment = table + 14; segment < table + 14 + doubled; segment += 2)
            {
                const std::size_t start = segment + 2 + doubled;
                if (code > Word(segment) || code < Word(start))
                    continue;
                const std::size_t range = start + 2 * doubled;
                const int delta = Word(start + doubled);
                if (Word(range) == 0)
                    return static_cast<std::size_t>((code + delta) & 0xFFFF);
                const std::size_t place =
                    range + static_cast<std::size_t>(Word(range) + 2 * (code - Word(start)));
                return static_cast<std::size_t>((Word(place) + delta) & 0xFFFF);
            }
            return 0;
        }
        return 0;
    }
    int AdvanceOf(int code) const
    {
        const auto metrics = static_cast<std::size_t>(Word(Table("hhea") + 34));
        return Word(Table("hmtx") + 4 * std::min(GlyphOf(code), metrics - 1));
    }

    /// Replaces a name wherever it stands; both have the same length.
    void Rename(const std::string& from, const std::string& to)
    {
        for (const bool isWide : {false, true})
        {
            const std::string wide = isWide ? std::string(1, '\0') : std::string();
            std::string old;
            std::string fresh;
            for (std::size_t i = 0; i < from.size(); ++i)
            {
                old += wide + from[i];
                fresh += wide + to[i];
            }
            for (auto at = bytes.begin();
                 (at = std::search(at, bytes.end(), old.begin(), old.end())) != bytes.end();)
                at = std::copy(fresh.begin(), fresh.end(), at);
        }
    }
    void SetWeight(int weight) { SetWord(Table("OS/2") + 4, weight); }
    void SetItalic()
    {
        SetWord(Table("OS/2") + 62, 1);
        SetWord(Table("head") + 44, 2);
    }

private:
    void SetWord(std::size_t at, int word)
    {
        bytes.at(at) = static_cast<std::uint8_t>(word >> 8);
        bytes.at(at + 1) = static_cast<std::uint8_t>(word);
    }
};
