#include "curves/MEnvelopeComputer.h"

#include <gtest/gtest.h>
