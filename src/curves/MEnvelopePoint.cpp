#include "curves/MEnvelopePoint.h"
