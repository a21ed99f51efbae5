#include "curves/MADSR.h"

#include <gtest/gtest.h>
