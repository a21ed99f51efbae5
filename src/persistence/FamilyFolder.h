#pragma once

#include "foundation/strings/MString.h"

/// Where files lie that all products of the family share; empty if the system has no such place.
/// Looks at the environment each time.
MString FindFamilyFolder();
