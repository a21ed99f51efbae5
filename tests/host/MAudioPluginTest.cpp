#include "host/MAudioPlugin.h"

#include <gtest/gtest.h>
