#include "shell/modulators/MModulatorProjection.h"

#include <algorithm>

#include "effect/MSignalGenerator.h"

double MModulatorProjection::Apply(double y, double lfo,
                                   const MSignalGenerator& signal) const noexcept
{
    const double p = Project ? double{signal.Get(y * IntervalSize + PhaseShift)}
                             : std::clamp(2.0 * y - 1.0, -1.0, 1.0);
    return Mix(LFOModulation, lfo, p);
}
