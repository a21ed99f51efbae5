#include "gui/drawing/MBaseBitmap.h"

#include <utility>

#include "foundation/limits.h"
#include "foundation/threads/MException.h"

void MBaseBitmap::CheckSize(int newWidth, int newHeight)
{
    if (newWidth < 1 || newHeight < 1)
        return;
    if (newWidth > limits::BitmapSide || newHeight > limits::BitmapSide ||
        std::int64_t{newWidth} * newHeight > limits::BitmapPixels)
        throw MException("Bitmap is too large.", MException::BadData);
}

void MBaseBitmap::SetSize(int newWidth, int newHeight) noexcept
{
    const bool hasPixels = newWidth > 0 && newHeight > 0;
    width = hasPixels ? newWidth : 0;
    height = hasPixels ? newHeight : 0;
    ResetClip();
}

void MBaseBitmap::SwapSize(MBaseBitmap& other) noexcept
{
    std::swap(width, other.width);
    std::swap(height, other.height);
    std::swap(clip, other.clip);
}
