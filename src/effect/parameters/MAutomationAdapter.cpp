#include "effect/parameters/MAutomationAdapter.h"
