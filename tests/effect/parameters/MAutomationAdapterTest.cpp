#include "effect/parameters/MAutomationAdapter.h"

#include <gtest/gtest.h>
