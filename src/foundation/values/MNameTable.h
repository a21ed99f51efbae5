#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "foundation/strings/MString.h"

/// Finds names by their hash, as they are compared everywhere else: by MString::Compare. Constant
/// once it is made.
class MNameTable
{
public:
    /// @p allNames have to outlive the table.
    explicit MNameTable(std::span<const char* const> allNames);

    /// The index of the first name that equals @p name, or -1. A name that equals it by its base
    /// letters alone lies in another bucket and is not found.
    int Find(const MString& name) const noexcept;

private:
    static constexpr std::size_t BucketCount = 32;

    static std::size_t BucketOf(const MString& name) noexcept;

    struct Entry
    {
        const char* name;
        int index;
    };
    std::array<std::vector<Entry>, BucketCount> buckets;
};
