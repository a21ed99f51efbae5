#pragma once

#include "dsp/pitch/MPitchAutoTune.h"
#include "dsp/pitch/MPitchDetectorFFT.h"
#include "shell/modulators/MModulatorPitch.h"

/// The pitch of an input, pulled to the notes of the chromatic scale if that is wanted. Owned by a
/// modulator; see MModulatorPitchDetector for threads.
class MTunedPitchDetector final : public MModulatorPitchDetector
{
public:
    void SetSampleRate(double newRate) override;
    void Reset() noexcept override;
    double Process(const float* samples, int count, const Settings& settings) noexcept override;

private:
    MPitchDetectorFFT detector;
    MPitchAutoTune tuner;
    double rate = 0.0;       ///< Hz, that the detector is set up for
    double tunedPitch = 0.0; ///< Hz, of the last detection
};
