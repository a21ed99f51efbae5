#pragma once

#include <initializer_list>
#include <vector>

#include "foundation/strings/MString.h"

/// Texts in a row.
class MStringList
{
public:
    MStringList() = default;
    MStringList(std::initializer_list<MString> texts) : items(texts) {}

    void Add(const MString& text) { items.push_back(text); }
    void Clear() noexcept { items.clear(); }

    int Count() const noexcept { return static_cast<int>(items.size()); }
    /// @p index is 0 to Count() - 1.
    const MString& operator[](int index) const noexcept
    {
        return items[static_cast<std::size_t>(index)];
    }
    /// The first text that compares equal, or -1.
    int Find(const MString& text) const noexcept
    {
        for (int i = 0; i < Count(); ++i)
            if ((*this)[i] == text)
                return i;
        return -1;
    }

    auto begin() const noexcept { return items.begin(); }
    auto end() const noexcept { return items.end(); }

private:
    std::vector<MString> items;
};
