#include "shell/modulators/MTunedPitchDetector.h"

void MTunedPitchDetector::SetSampleRate(double newRate)
{
    if (newRate != rate)
        detector.SetSampleRate(newRate);
    rate = newRate;
    Reset();
}

void MTunedPitchDetector::Reset() noexcept
{
    detector.Reset();
    tuner.Reset();
    tunedPitch = 0.0;
}

double MTunedPitchDetector::Process(const float* samples, int count,
                                    const Settings& settings) noexcept
{
    detector.SetThreshold(settings.threshold);
    detector.SetAccuracy(settings.accuracy);
    tuner.SetSpeed(settings.tuneSpeed);
    tuner.SetDepth(settings.tuneDepth);
    const double pitch = detector.Process(samples, count);
    // Between detections the pitch stands, and the tuner's time with it.
    if (const int detections = detector.GetDetectionCount(); detections > 0)
        tunedPitch = tuner.Process(pitch, detections * detector.GetHopSeconds());
    return settings.isTuned ? tunedPitch : pitch;
}
