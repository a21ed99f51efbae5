#include "gui/drawing/MAlphaMask.h"

#include <utility>

void MAlphaMask::Create(int newWidth, int newHeight, std::uint8_t coverage)
{
    CheckSize(newWidth, newHeight);
    const bool hasPixels = newWidth > 0 && newHeight > 0;
    const auto columns = static_cast<std::size_t>(hasPixels ? (newWidth - 1) / BlockSide + 1 : 0);
    const auto rows = static_cast<std::size_t>(hasPixels ? (newHeight - 1) / BlockSide + 1 : 0);
    std::vector<Block> newBlocks(columns * rows);
    for (Block& block : newBlocks)
        block.constant = coverage;

    blocks = std::move(newBlocks);
    blocksPerRow = columns;
    DropSpans();
    SetSize(newWidth, newHeight);
}

void MAlphaMask::Assign(const std::uint8_t* coverage, std::ptrdiff_t stride, int newWidth,
                        int newHeight)
{
    Create(newWidth, newHeight);
    for (int y = 0; y < GetHeight(); ++y)
        for (int x = 0; x < GetWidth(); ++x)
            Set(x, y, coverage[y * stride + x]);
    Finish();
}

void MAlphaMask::Set(int x, int y, std::uint8_t coverage)
{
    DropSpans();
    Block& block = blocks[BlockAt(x, y)];
    if (!block.bytes)
    {
        if (coverage == block.constant)
            return;
        block.bytes = std::make_unique<std::array<std::uint8_t, BlockPixels>>();
        block.bytes->fill(block.constant);
    }
    (*block.bytes)[PlaceInBlock(x, y)] = coverage;
}

void MAlphaMask::Finish()
{
    for (int y = 0; y < GetHeight(); y += BlockSide)
        for (int x = 0; x < GetWidth(); x += BlockSide)
            Compact(blocks[BlockAt(x, y)], std::min(BlockSide, GetWidth() - x),
                    std::min(BlockSide, GetHeight() - y));
    ListSpans();
}

std::span<const MAlphaMask::Span> MAlphaMask::GetSpans(int firstY, int lastY) const noexcept
{
    const auto first = std::ranges::lower_bound(spans, firstY, {}, &Span::y);
    const auto behind = std::ranges::upper_bound(spans, lastY, {}, &Span::y);
    return first < behind ? std::span<const Span>(first, behind) : std::span<const Span>();
}

void MAlphaMask::DropSpans() noexcept
{
    spans.clear();
    hasSpans = false;
}

void MAlphaMask::Compact(Block& block, int columns, int rows) noexcept
{
    if (!block.bytes)
        return;
    // What the block has beyond the mask does not count.
    const std::uint8_t first = block.bytes->front();
    for (int y = 0; y < rows; ++y)
        for (int x = 0; x < columns; ++x)
            if ((*block.bytes)[PlaceInBlock(x, y)] != first)
                return;
    block.constant = first;
    block.bytes.reset();
}

void MAlphaMask::ListSpans()
{
    spans.clear();
    for (int y = 0; y < GetHeight(); ++y)
    {
        bool isInSpan = false;
        for (int x = 0; x < GetWidth(); ++x)
        {
            if (Get(x, y) == 0)
            {
                isInSpan = false;
                continue;
            }
            if (!isInSpan)
                spans.push_back({y, x, x});
            spans.back().lastX = x;
            isInSpan = true;
        }
    }
    hasSpans = true;
}
