#include "shell/DelayQueue.h"
