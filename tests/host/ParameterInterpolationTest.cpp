#include "host/ParameterInterpolation.h"

#include <gtest/gtest.h>
