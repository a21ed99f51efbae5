#include "host/MAudioPluginAutomation.h"

#include <gtest/gtest.h>
