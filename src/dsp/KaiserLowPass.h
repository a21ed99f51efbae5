#pragma once

#include <memory>
#include <vector>

#include "dsp/kernels/Polyphase.h"

/// Linear-phase low-pass between a rate and a multiple of it: a sinc under a Kaiser window.
///
/// It is 6 dB down at half the lower rate, so every phases-th tap but the middle one is 0: phase 0
/// passes samples on as they are, and the factor 2 costs half. The transition is symmetric about
/// that frequency; beyond it the filter is at least 98 dB down, before it within 0.001 dB.
/// Never changes; shared by all who need the same one, for the life of the process.
class KaiserLowPass
{
public:
    /// The filter for @p newFactor, 2 to kernels::PolyphaseFilter::MaxPhases, whose transition is
    /// @p transition wide, as a share of the lower rate. Twice its delay in samples at the lower
    /// rate is made a multiple of @p delayStep. Locks, and may allocate.
    static std::shared_ptr<const KaiserLowPass> Get(int newFactor, double transition,
                                                    int delayStep);

    KaiserLowPass(int newFactor, double transition, int delayStep);

    /// For both ways; every phase sums to 1, so on the way down there is a gain of the factor.
    kernels::PolyphaseFilter GetPhases() const noexcept;
    /// Samples at the lower rate; the same for the way up and the way down.
    int GetDelay() const noexcept { return delay; }

private:
    int factor;
    int delay;
    std::vector<float> taps; ///< phase by phase, 2 * delay each
};
