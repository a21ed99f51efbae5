#pragma once

#include <cstddef>
#include <string_view>

#include "foundation/strings/MString.h"

/// Makes many short texts that are mostly read: their blocks lie side by side in slabs of memory,
/// a twentieth of the allocations that single blocks need. A slab lives as long as any text in it,
/// so whoever keeps one text of many for good keeps SlabBytes. A text that is changed leaves its
/// slab. One thread at a time makes texts; the texts are as free as others.
class MStringSlab
{
public:
    static constexpr std::size_t SlabBytes = 1024;

    MStringSlab() = default;
    ~MStringSlab();
    MStringSlab(const MStringSlab&) = delete;
    MStringSlab& operator=(const MStringSlab&) = delete;

    /// As MString::FromUTF16 does; texts too long to share a slab get blocks of their own.
    MString Make(std::u16string_view characters);

private:
    static constexpr std::size_t MaxTextBytes = SlabBytes / 4; ///< of a block in a slab
    static constexpr std::int32_t MaxTexts = SlabBytes / 12;   ///< of a single character each

    /// Gives up the slab, but for the texts that were made in it.
    void Finish() noexcept;

    MString::Slab* slab = nullptr; ///< that is being filled
    std::size_t fill = 0;          ///< bytes of it
    std::int32_t left = 0;         ///< texts that it is held for and that are not made yet
};
