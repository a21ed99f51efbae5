#include "host/MAudioPluginAutomation.h"
