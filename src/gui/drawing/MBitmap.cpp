#include "gui/drawing/MBitmap.h"

#include <cstddef>
#include <utility>

#include "gui/drawing/MAlphaMask.h"

void MBitmap::Create(int newWidth, int newHeight, bool makePaletted)
{
    CheckSize(newWidth, newHeight);
    const std::size_t count =
        newWidth > 0 && newHeight > 0
            ? static_cast<std::size_t>(newWidth) * static_cast<std::size_t>(newHeight)
            : 0;
    std::vector<MColor> newPixels(makePaletted ? 0 : count);
    std::vector<std::uint8_t> newIndices(makePaletted ? count : 0);
    auto newPalette = makePaletted ? std::make_unique<Palette>() : nullptr;

    pixels = std::move(newPixels);
    indices = std::move(newIndices);
    palette = std::move(newPalette);
    SetSize(newWidth, newHeight);
}

void MBitmap::Assign(const MBitmap& other)
{
    if (this == &other)
        return ResetClip();

    std::vector<MColor> newPixels = other.pixels;
    std::vector<std::uint8_t> newIndices = other.indices;
    auto newPalette = other.IsPaletted() ? std::make_unique<Palette>(*other.palette) : nullptr;

    pixels = std::move(newPixels);
    indices = std::move(newIndices);
    palette = std::move(newPalette);
    SetSize(other.GetWidth(), other.GetHeight());
}

void MBitmap::ToAlphaMask(MAlphaMask& mask) const
{
    mask.Create(GetWidth(), GetHeight());
    for (int y = 0; y < GetHeight(); ++y)
        for (int x = 0; x < GetWidth(); ++x)
            mask.Set(x, y, GetColor(x, y).GetAlpha());
    mask.Finish();
}

void MBitmap::Swap(MBitmap& other) noexcept
{
    SwapSize(other);
    pixels.swap(other.pixels);
    indices.swap(other.indices);
    palette.swap(other.palette);
    std::swap(pens, other.pens);
}
