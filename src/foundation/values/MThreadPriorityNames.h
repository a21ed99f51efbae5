#pragma once

#include <array>
#include <cstddef>

#include "foundation/threads/MThread.h"
#include "foundation/values/MValueEnum.h"

template <>
struct MEnumNames<MThread::Priority>
{
    static constexpr auto Names = []
    {
        std::array<const char*, MThread::Priorities.size()> names{};
        for (std::size_t i = 0; i < names.size(); ++i)
            names[i] = MThread::Priorities[i].name;
        return names;
    }();
};
