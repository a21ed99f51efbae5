#pragma once

#include "foundation/strings/MString.h"

/// A named value of an item.
struct MAttribute
{
    MString name;
    MString value;
};
