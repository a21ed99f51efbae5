#include "curves/MEnvelope.h"

#include <gtest/gtest.h>
