#include "shell/DelayQueue.h"

#include <gtest/gtest.h>
