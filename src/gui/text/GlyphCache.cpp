#include "gui/text/GlyphCache.h"

#include <algorithm>
#include <utility>

namespace
{

/// What the mask takes at most, as its blocks may also be constant; one without any counts as a
/// block, so that there is an end to them, too.
std::size_t CountCoverage(const MAlphaMask& mask) noexcept
{
    constexpr int Side = MAlphaMask::BlockSide;
    const auto blocks = [](int pixels)
    { return static_cast<std::size_t>(std::max(1, (pixels + Side - 1) / Side)); };
    return blocks(mask.GetWidth()) * blocks(mask.GetHeight()) * Side * Side;
}

} // namespace

GlyphCache& GlyphCache::Get()
{
    static GlyphCache cache(DefaultBytes);
    return cache;
}

const Glyph* GlyphCache::Find(const Key& key) noexcept
{
    const auto found = places.find(key);
    if (found == places.end())
        return nullptr;
    entries.splice(entries.begin(), entries, found->second);
    return found->second->glyph.get();
}

const Glyph* GlyphCache::Add(const Key& key, std::unique_ptr<Glyph> glyph)
{
    const std::size_t size = CountCoverage(glyph->mask);
    while (!entries.empty() && bytes + size > limit)
    {
        bytes -= entries.back().bytes;
        places.erase(entries.back().key);
        entries.pop_back();
    }
    entries.push_front({key, std::move(glyph), size});
    places[key] = entries.begin();
    bytes += size;
    return entries.front().glyph.get();
}
