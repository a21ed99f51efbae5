#include "shell/modulators/MModulatorPitch.h"

#include <algorithm>
#include <cmath>

namespace
{

using Settings = MModulatorPitchSettings;
using namespace modulatortexts;

constexpr double LowestPitch = 20.0; ///< Hz; below it the input has none

constexpr MModulatorNumberT<Settings> Numbers[] = {
    {"LFOModulation", &Settings::LFOModulation, 0.0, 1.0, "Pitch LFO modulation", &Percents},
    {"ShiftOctaves", &Settings::ShiftOctaves, -4.0, 4.0, "Shift octaves", &WholeStep},
    {"ShiftSemitones", &Settings::ShiftSemitones, -12.0, 12.0, "Shift semitones", &WholeStep},
    {"ShiftCents", &Settings::ShiftCents, -100.0, 100.0, "Shift cents", &Cents},
    {"MinFrequency", &Settings::MinFrequency, MinLogFrequency, MaxLogFrequency,
     "Pitch min frequency", &LogHertz},
    {"MaxFrequency", &Settings::MaxFrequency, MinLogFrequency, MaxLogFrequency,
     "Pitch max frequency", &LogHertz},
    {"Threshold", &Settings::Threshold, 0.0, 1.0, "Pitch threshold", &Percents},
    {"Accuracy", &Settings::Accuracy, 0.0, 1.0, nullptr},
    {"AutoTuneSpeed", &Settings::AutoTuneSpeed, 0.0, 1.0, "Pitch auto-tune speed", &Percents},
    {"AutoTuneDepth", &Settings::AutoTuneDepth, 0.0, 1.0, "Pitch auto-tune depth", &Percents},
};
constexpr MModulatorSwitchT<Settings> Switches[] = {{"AutoTuneEnable", &Settings::AutoTuneEnable}};

} // namespace

void MModulatorPitchSettings::Store(MXMLItem& item) const
{
    modulatornumbers::StoreAll(item, *this, Numbers, Switches);
}

void MModulatorPitchSettings::Load(MXMLItem& item)
{
    modulatornumbers::LoadAll(item, *this, Numbers, Switches);
}

void MModulatorPitchSettings::Publish(std::vector<MModulatorParameter>& parameters,
                                      const char* group)
{
    modulatornumbers::PublishAll(parameters, group, *this, Numbers);
}

void MModulatorPitch::SetSampleRate(double newRate)
{
    if (detector != nullptr)
        detector->SetSampleRate(newRate);
}

void MModulatorPitch::Reset() noexcept
{
    if (detector != nullptr)
        detector->Reset();
}

double MModulatorPitch::Process(const float* input, int samples) noexcept
{
    if (detector == nullptr || input == nullptr)
        return LastPitchValue;
    const double threshold = Threshold;
    const double laxness = 1.0 - Accuracy;
    const double hz = detector->Process(input, samples,
                                        {.threshold = threshold * threshold,
                                         .accuracy = 0.999 - 0.299 * laxness * laxness,
                                         .isTuned = AutoTuneEnable,
                                         .tuneSpeed = AutoTuneSpeed,
                                         .tuneDepth = AutoTuneDepth});
    if (hz >= LowestPitch)
    {
        const double semitones = 12.0 * ShiftOctaves + ShiftSemitones + ShiftCents / 100.0;
        LastPitchValue = 2.0 * Place(hz * std::exp2(semitones / 12.0)) - 1.0;
    }
    return LastPitchValue;
}

double MModulatorPitch::Place(double hz) const noexcept
{
    double low = MinFrequency;
    double high = MaxFrequency;
    if (high <= low + 1e-50)
    {
        low = MinLogFrequency;
        high = MaxLogFrequency;
    }
    return std::clamp((std::log10(hz) - low) / (high - low), 0.0, 1.0);
}
