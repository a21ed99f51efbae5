#include "shell/modulators/MModulatorEnvelope.h"

#include <algorithm>
#include <cmath>

#include "foundation/xml/MXMLItem.h"
#include "shell/modulators/MBandPass.h"
#include "shell/modulators/ModulatorNumbers.h"

namespace
{

using Settings = MModulatorEnvelopeSettings;
using namespace modulatortexts;

constexpr auto AudioSource = static_cast<std::int32_t>(MLFOEnvelopeMode::Audio);

constexpr MModulatorNumberT<Settings> Numbers[] = {
    {"LFOModulation", &Settings::LFOModulation, 0.0, 1.0, "Envelope LFO modulation", &Percents},
    {"ThresholdOn", &Settings::ThresholdOn, 0.0, 1.0, "Envelope threshold on", &Percents},
    {"ThresholdOff", &Settings::ThresholdOff, 0.0, 1.0, "Envelope threshold off", &Percents},
    {"RMSLength", &Settings::RMSLength, 0.0, 0.1, "Envelope RMS length", &Seconds},
    {"PhaseShift", &Settings::PhaseShift, 0.0, 1.0, "Envelope phase", &Percents},
    {"IntervalSize", &Settings::IntervalSize, 0.0, 2.0, "Envelope interval size", &Percents},
};
constexpr MModulatorSwitchT<Settings> Switches[] = {{"Project", &Settings::Project}};
constexpr const char* SourceNames[] = {"MIDI", "Audio"};
constexpr const char* SourceKey = "Threshold"; // of old

} // namespace

void MModulatorEnvelopeSettings::Store(MXMLItem& item) const
{
    modulatornumbers::StoreAll(item, *this, Numbers, Switches);
    modulatornumbers::WriteChoice(item, SourceKey, EnvelopeSource, SourceNames);
}

void MModulatorEnvelopeSettings::Load(MXMLItem& item)
{
    modulatornumbers::LoadAll(item, *this, Numbers, Switches);
    EnvelopeSource = modulatornumbers::ReadChoice(item, SourceKey, 0, SourceNames);
}

void MModulatorEnvelopeSettings::Publish(std::vector<MModulatorParameter>& parameters,
                                         const char* group)
{
    modulatornumbers::PublishAll(parameters, group, *this, Numbers);
}

void MModulatorEnvelope::Reset(double newRate)
{
    rate = newRate;
    GateCount = 0;
    meanSquare = 0.0;
    state = {};
    ADSR.SetSampleRate(newRate);
}

void MModulatorEnvelope::FollowSource() noexcept
{
    const std::int32_t source = EnvelopeSource;
    if (source == gateSource)
        return;
    // What the one counted, the other would never count down.
    gateSource = source;
    GateCount = 0;
    ADSR.NoteOff(state, 0.0);
}

void MModulatorEnvelope::OnNote(bool on, bool isRunning)
{
    FollowSource();
    if (gateSource == AudioSource)
        return;
    if (on)
    {
        if (++GateCount == 1 && isRunning)
            ADSR.NoteOn(state, 0.0);
    }
    else if (GateCount > 0 && --GateCount == 0)
        ADSR.NoteOff(state, 0.0);
}

double MModulatorEnvelope::Process(const float* const* inputs, int samples, std::size_t channels)
{
    FollowSource();
    if (gateSource == AudioSource && channels > 0)
        ScanGate(inputs, samples, channels);
    return std::clamp(ADSR.Advance(state, samples), 0.0, 1.0);
}

void MModulatorEnvelope::ScanGate(const float* const* inputs, int samples, std::size_t channels)
{
    const double keep = mean.Get(RMSLength, rate);
    const double share = (1.0 - keep) / static_cast<double>(channels);
    const double thresholdOn = ThresholdOn;
    const double thresholdOff = ThresholdOff;
    const bool wasOn = GateCount > 0;
    bool isOn = wasOn;
    int lastFlip = 0;
    for (int i = 0; i < samples; ++i)
    {
        double sum = 0.0;
        for (std::size_t channel = 0; channel < channels; ++channel)
        {
            const double x = inputs[channel][i];
            sum += x * x;
        }
        meanSquare = keep * meanSquare + share * sum + MBiquad::LeastLevel;
        if (isOn ? meanSquare < thresholdOff : meanSquare > thresholdOn)
        {
            isOn = !isOn;
            lastFlip = i;
        }
    }
    if (!std::isfinite(meanSquare))
        meanSquare = 0.0;
    GateCount = isOn ? 1 : 0;
    if (isOn && !wasOn)
        ADSR.NoteOn(state, lastFlip);
    else if (!isOn && wasOn)
        ADSR.NoteOff(state, lastFlip);
}
