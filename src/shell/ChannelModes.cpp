#include "shell/ChannelModes.h"
