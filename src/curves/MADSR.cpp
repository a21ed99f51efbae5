#include "curves/MADSR.h"

MADSR::MADSR(MLock* processingLock) : lock(processingLock) {}
