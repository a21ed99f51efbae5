#include "curves/StepPattern.h"
