#include "curves/StepPattern.h"

#include <gtest/gtest.h>
