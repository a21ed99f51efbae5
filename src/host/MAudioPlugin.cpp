#include "host/MAudioPlugin.h"
