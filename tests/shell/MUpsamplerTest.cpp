#include "shell/MUpsampler.h"

#include <gtest/gtest.h>
