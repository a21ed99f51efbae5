#include "effect/MGaussianSmoother.h"

#include <gtest/gtest.h>
