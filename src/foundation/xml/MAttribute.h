#pragma once

#include <utility>

#include "foundation/strings/MString.h"

/// A named value of an item.
struct MAttribute
{
    MAttribute(const MString& attributeName, MString attributeValue) noexcept
        : name(attributeName),
          value(std::move(attributeValue))
    {
    }

    MString name;
    MString value;
};
