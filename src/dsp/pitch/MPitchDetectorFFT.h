#pragma once

#include "dsp/pitch/MPitchFFTBase.h"

/// Finds the fundamental frequency of one channel with the method of McLeod and Wyvill: the period
/// is the first key maximum of the normalised square difference that comes close to the highest.
///
/// Looks every 21 to 23 ms (64 ms at 8 kHz) at the last 85 to 93 ms. A new note shows once it fills
/// what is looked at, after 77 to 113 ms; it may first show as a lower one, whose period is common
/// to both. From 20 Hz to a fifth of the analysis rate sines come within 2 cents, tones with
/// harmonics within 1.
///
/// High accuracy prefers the true period where the fundamental is weak, but in noise may fall
/// octaves below; low accuracy answers the highest plausible note, forgives unsteady periods, and
/// may take a weak fundamental an octave high.
/// On the audio thread, under the lock of its owner; only SetSampleRate allocates.
class MPitchDetectorFFT : public MPitchFFTBase<4096>
{
public:
    /// As the base does it; there is no pitch then.
    void SetSampleRate(double rate);
    void Reset() noexcept;

    /// Windows whose mean square, their mean left out, lies below @p squared have no pitch.
    void SetThreshold(double squared) noexcept { threshold = squared; }

    /// How high a key maximum has to be for the period, as a share of the highest: usually from
    /// 0.7 to 0.999.
    void SetAccuracy(double value) noexcept { accuracy = value; }

    /// Frequencies outside count as no pitch.
    void SetRange(double minHz, double maxHz) noexcept;

    /// Takes @p count samples. Those that are no finite numbers count as 0.
    /// @return the last frequency that was found, in Hz; 0 without a pitch
    double Process(const float* samples, int count) noexcept;

    /// How often the last Process looked; GetHopSeconds lie between.
    int GetDetectionCount() const noexcept { return detectionCount; }

private:
    double Detect() noexcept;
    double FindPeriod() noexcept;

    double threshold = 0.01;
    double accuracy = 0.98704;
    double minFrequency = 20.0;    ///< Hz
    double maxFrequency = 20000.0; ///< Hz
    double frequency = 0.0;        ///< Hz, the last
    int detectionCount = 0;
};
