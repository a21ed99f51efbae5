#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "gui/drawing/MBaseBitmap.h"
#include "gui/drawing/MColor.h"

class MAlphaMask;

/// An image in memory: a true-colour one holds MColor after MColor, a paletted one bytes that stand
/// for the 256 colours of its palette. Rows run from top to bottom without padding.
/// Two drawers on one bitmap share its clip and its pens. GUI thread.
class MBitmap : public MBaseBitmap
{
public:
    static constexpr int PaletteSize = 256;
    using Palette = std::array<MColor, PaletteSize>;

    MBitmap() noexcept = default;
    /// @throws as Create does
    MBitmap(int initialWidth, int initialHeight, bool isInitiallyPaletted = false)
    {
        Create(initialWidth, initialHeight, isInitiallyPaletted);
    }

    /// Makes all pixels anew, transparent black or index 0, and the clip the whole bitmap. A width
    /// or height below 1 leaves an empty bitmap.
    /// @throws MException (256) "Bitmap is too large."; the bitmap is then as it was
    void Create(int newWidth, int newHeight, bool makePaletted = false);
    /// Copies size, pixels and palette; the clip becomes the whole bitmap, and the pens and
    /// attachments stay.
    virtual void Assign(const MBitmap& other);
    /// Makes @p mask one of this size with the alpha channel, and with spans.
    virtual void ToAlphaMask(MAlphaMask& mask) const;
    /// Exchanges all but the attachments, so that loaders can build an image and then hand it over.
    void Swap(MBitmap& other) noexcept;

    bool IsPaletted() const noexcept { return palette != nullptr; }
    /// The colour at a place inside, of either form.
    MColor GetColor(int x, int y) const noexcept
    {
        return IsPaletted() ? (*palette)[*GetIndexRow(y, x)] : *GetRow(y, x);
    }

    /// The pixels of row @p y from @p x on, both inside; true colour only.
    MColor* GetRow(int y, int x = 0) noexcept { return pixels.data() + PlaceOf(x, y); }
    const MColor* GetRow(int y, int x = 0) const noexcept { return pixels.data() + PlaceOf(x, y); }

    /// The same of a paletted bitmap.
    std::uint8_t* GetIndexRow(int y, int x = 0) noexcept { return indices.data() + PlaceOf(x, y); }
    const std::uint8_t* GetIndexRow(int y, int x = 0) const noexcept
    {
        return indices.data() + PlaceOf(x, y);
    }
    /// Paletted bitmaps only.
    Palette& GetPalette() noexcept { return *palette; }
    const Palette& GetPalette() const noexcept { return *palette; }

    /// From where LineTo and LineToF draw; each has its own.
    struct Pens
    {
        std::int32_t x = 0;
        std::int32_t y = 0;
        double preciseX = 0.0;
        double preciseY = 0.0;
    };
    Pens pens;

private:
    std::vector<MColor> pixels;        ///< empty if paletted
    std::vector<std::uint8_t> indices; ///< empty if not
    std::unique_ptr<Palette> palette;  ///< null if not
};
