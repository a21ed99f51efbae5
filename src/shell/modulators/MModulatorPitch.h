#pragma once

#include <vector>

#include "foundation/threads/MRelaxed.h"
#include "shell/modulators/ModulatorNumbers.h"

class MXMLItem;
struct MModulatorParameter;

/// What tells a modulator the pitch of its input. Audio thread; does not allocate.
class MModulatorPitchDetector
{
public:
    struct Settings
    {
        double threshold; ///< mean square below which input is unpitched
        double accuracy;  ///< share of the best period that a shorter one has to reach
        bool isTuned;
        double tuneSpeed; ///< 0.0 to 1.0
        double tuneDepth; ///< 0.0 to 1.0
    };

    virtual ~MModulatorPitchDetector() = default;
    /// May allocate; not on the audio thread.
    virtual void SetSampleRate(double newRate) = 0;
    /// Forgets all input.
    virtual void Reset() noexcept = 0;
    /// The frequency in Hz, below 20 for what has none.
    virtual double Process(const float* samples, int count, const Settings& settings) noexcept = 0;
};

/// What of MModulatorPitch is stored. Any thread writes the fields.
struct MModulatorPitchSettings
{
    void Store(MXMLItem& item) const;
    /// What is missing takes its default.
    void Load(MXMLItem& item);
    /// Adds what can be automated, under keys of @p group.
    void Publish(std::vector<MModulatorParameter>& parameters, const char* group);

    MRelaxed<double> LFOModulation = 0.0;            ///< share of the LFO, 0.0 to 1.0
    MRelaxed<double> ShiftOctaves = 0.0;             ///< -4 to 4
    MRelaxed<double> ShiftSemitones = 0.0;           ///< -12 to 12
    MRelaxed<double> ShiftCents = 0.0;               ///< -100 to 100
    MRelaxed<double> MinFrequency = MinLogFrequency; ///< log10 of Hz
    MRelaxed<double> MaxFrequency = MaxLogFrequency;
    MRelaxed<double> Threshold = 0.1; ///< amplitude, 0.0 to 1.0
    MRelaxed<double> Accuracy = 0.8;  ///< 0.0 to 1.0
    MRelaxed<bool> AutoTuneEnable = false;
    MRelaxed<double> AutoTuneSpeed = 0.5; ///< 0.0 to 1.0
    MRelaxed<double> AutoTuneDepth = 0.5; ///< 0.0 to 1.0
};

/// Follows the pitch of the first channel, on a scale of octaves; where there is none, the last
/// value holds. Owned by a modulator; audio thread, under the processing lock.
class MModulatorPitch : public MModulatorPitchSettings
{
public:
    /// Not owned; outlives this. Without one all input is unpitched.
    void SetDetector(MModulatorPitchDetector* newDetector) noexcept { detector = newDetector; }
    /// Not on the audio thread.
    void SetSampleRate(double newRate);
    void Reset() noexcept;

    /// Takes @p samples of one channel, null for none. Returns the value, -1.0 to 1.0.
    double Process(const float* input, int samples) noexcept;

private:
    /// The place of @p hz between the ends, 0.0 to 1.0.
    double Place(double hz) const noexcept;

    MModulatorPitchDetector* detector = nullptr;
    double LastPitchValue = 0.0;
};
