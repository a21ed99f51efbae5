#include "dsp/kernels/Shapes.h"

#include <gtest/gtest.h>
