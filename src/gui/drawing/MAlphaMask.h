#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "gui/drawing/MBaseBitmap.h"

/// Coverage from 0 to 255 for each pixel, kept in blocks of 16 by 16 so that large empty or solid
/// areas cost nothing. For runs of glyphs and for bitmaps with transparency. GUI thread.
class MAlphaMask : public MBaseBitmap
{
public:
    static constexpr int BlockSide = 16; ///< pixels
    static constexpr std::size_t BlockPixels = std::size_t{BlockSide} * BlockSide;

    /// Pixels of row y from firstX to lastX, of which none has coverage 0.
    struct Span
    {
        std::int32_t y;
        std::int32_t firstX;
        std::int32_t lastX;
    };

    MAlphaMask() noexcept = default;
    /// @throws as Create does
    MAlphaMask(int initialWidth, int initialHeight) { Create(initialWidth, initialHeight); }

    /// Makes the mask anew, with @p coverage everywhere and no spans.
    /// @throws MException (256) "Bitmap is too large."; the mask is then as it was
    void Create(int newWidth, int newHeight, std::uint8_t coverage = 0);
    /// Copies rows that lie @p stride bytes apart, and calls Finish.
    /// @throws as Create does
    void Assign(const std::uint8_t* coverage, std::ptrdiff_t stride, int newWidth, int newHeight);

    /// At a place inside.
    std::uint8_t Get(int x, int y) const noexcept
    {
        const Block& block = blocks[BlockAt(x, y)];
        return block.bytes ? (*block.bytes)[PlaceInBlock(x, y)] : block.constant;
    }
    /// Inside as well; drops the spans.
    void Set(int x, int y, std::uint8_t coverage);
    /// To be called when all is set: frees the bytes of blocks that are constant, and lists the
    /// spans.
    void Finish();
    /// The coverage of the pixels from @p x on, as far as they are stored side by side: a block's
    /// bytes, or none and the constant of the block.
    struct Run
    {
        const std::uint8_t* bytes; ///< null for a constant
        std::uint8_t constant;
        int count; ///< to the end of the block, which may lie beyond the width
    };
    Run GetRun(int x, int y) const noexcept
    {
        const Block& block = blocks[BlockAt(x, y)];
        return {block.bytes ? block.bytes->data() + PlaceInBlock(x, y) : nullptr, block.constant,
                BlockSide - x % BlockSide};
    }

    bool HasSpans() const noexcept { return hasSpans; }
    /// By y, then by x; with spans, drawing passes over all that lies between them.
    std::span<const Span> GetSpans() const noexcept { return spans; }
    /// Those of the rows from @p firstY to @p lastY.
    std::span<const Span> GetSpans(int firstY, int lastY) const noexcept;
    void DropSpans() noexcept;

private:
    struct Block
    {
        std::uint8_t constant = 0;
        std::unique_ptr<std::array<std::uint8_t, BlockPixels>> bytes; ///< null: constant
    };

    std::size_t BlockAt(int x, int y) const noexcept
    {
        return static_cast<std::size_t>(y / BlockSide) * blocksPerRow +
               static_cast<std::size_t>(x / BlockSide);
    }
    static std::size_t PlaceInBlock(int x, int y) noexcept
    {
        return static_cast<std::size_t>(y % BlockSide) * BlockSide +
               static_cast<std::size_t>(x % BlockSide);
    }
    void Compact(Block& block, int columns, int rows) noexcept;
    void ListSpans();

    std::size_t blocksPerRow = 0;
    std::vector<Block> blocks; ///< row after row
    std::vector<Span> spans;
    bool hasSpans = false;
};
