#include "host/ParameterInterpolation.h"
