#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <tuple>

#include "gui/text/Glyph.h"

/// Rendered glyphs, of which the one that was not used for the longest time goes first when their
/// coverage takes more than a number of bytes. GUI thread.
class GlyphCache
{
public:
    static constexpr std::size_t DefaultBytes = std::size_t{8} << 20;

    struct Key
    {
        std::uint64_t instance; ///< of MFontInstance
        int face;               ///< of FontCollection
        std::uint32_t glyph;

        bool operator<(const Key& other) const noexcept
        {
            return std::tie(instance, face, glyph) <
                   std::tie(other.instance, other.face, other.glyph);
        }
    };

    /// The one of the library.
    static GlyphCache& Get();

    explicit GlyphCache(std::size_t limitBytes) noexcept : limit(limitBytes) {}
    GlyphCache(const GlyphCache&) = delete;
    GlyphCache& operator=(const GlyphCache&) = delete;

    /// Null if the glyph has to be added. Also what is found here is valid until the next Add.
    const Glyph* Find(const Key& key) noexcept;
    /// Keeps @p glyph, which alone may be larger than the limit.
    const Glyph* Add(const Key& key, std::unique_ptr<Glyph> glyph);

    std::size_t CountGlyphs() const noexcept { return entries.size(); }
    std::size_t CountBytes() const noexcept { return bytes; }

private:
    struct Entry
    {
        Key key;
        std::unique_ptr<Glyph> glyph;
        std::size_t bytes;
    };

    std::size_t limit;
    std::size_t bytes = 0;
    std::list<Entry> entries; ///< the last used first
    std::map<Key, std::list<Entry>::iterator> places;
};
