#include "shell/MUpsampler.h"
