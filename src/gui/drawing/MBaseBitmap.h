#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <variant>

#include "gui/drawing/MRectangle.h"

/// What may be hung on a bitmap and goes with it.
class MAttachedObject
{
public:
    virtual ~MAttachedObject() = default;
};

/// Base of everything with pixels or coverage: a size, the rectangle to which drawing is confined,
/// and slots for what others keep beside it. GUI thread.
/// With a width or height below 1 it is empty: both are 0 then, nothing can be drawn on it, and the
/// clip's right and bottom are -1.
class MBaseBitmap
{
public:
    static constexpr std::size_t AttachmentCount = 8;
    /// Nothing, a plain value, or an object that goes with the bitmap.
    using Attachment =
        std::variant<std::monostate, std::intptr_t, std::unique_ptr<MAttachedObject>>;

    MBaseBitmap() noexcept = default;
    MBaseBitmap(const MBaseBitmap&) = delete;
    MBaseBitmap& operator=(const MBaseBitmap&) = delete;
    virtual ~MBaseBitmap() = default;

    int GetWidth() const noexcept { return width; }
    int GetHeight() const noexcept { return height; }
    bool IsEmpty() const noexcept { return width < 1; }
    MRectangle GetBounds() const noexcept { return {0, 0, width - 1, height - 1}; }

    const MRectangle& GetClip() const noexcept { return clip; }
    /// Cuts @p rectangle to the bitmap; what is then empty lets nothing be drawn.
    void SetClip(const MRectangle& rectangle) noexcept { clip = rectangle.Intersect(GetBounds()); }
    void ResetClip() noexcept { clip = GetBounds(); }

    /// @p slot is below AttachmentCount.
    Attachment& GetAttachment(std::size_t slot) noexcept { return attachments[slot]; }

protected:
    /// @throws MException (256) "Bitmap is too large." beyond limits::BitmapSide or BitmapPixels
    static void CheckSize(int newWidth, int newHeight);
    /// Takes over a size that was checked, and makes the clip the whole of it.
    void SetSize(int newWidth, int newHeight) noexcept;
    /// Attachments stay where they are.
    void SwapSize(MBaseBitmap& other) noexcept;
    /// Where the pixel stands in rows without padding.
    std::size_t PlaceOf(int x, int y) const noexcept
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }

private:
    std::int32_t width = 0;
    std::int32_t height = 0;
    MRectangle clip;
    std::array<Attachment, AttachmentCount> attachments;
};
