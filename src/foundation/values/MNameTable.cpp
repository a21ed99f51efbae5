#include "foundation/values/MNameTable.h"

MNameTable::MNameTable(std::span<const char* const> allNames)
{
    int index = 0;
    for (const char* const name : allNames)
        buckets[BucketOf(name)].push_back({name, index++});
}

int MNameTable::Find(const MString& name) const noexcept
{
    for (const Entry& entry : buckets[BucketOf(name)])
        if (name == entry.name)
            return entry.index;
    return -1;
}

std::size_t MNameTable::BucketOf(const MString& name) noexcept
{
    return static_cast<std::uint32_t>(name.Hash()) % BucketCount;
}
