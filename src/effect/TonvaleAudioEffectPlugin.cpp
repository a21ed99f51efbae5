#include "effect/TonvaleAudioEffectPlugin.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "dsp/kernels/Arithmetic.h"
#include "dsp/kernels/Cycles.h"
#include "effect/MRampedGain.h"
#include "effect/StockValueTexts.h"
#include "foundation/threads/MLockGuard.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

constexpr double OctavesPerSemitone = 0.08333333333333333;
constexpr double MinLogFrequency = 1.3010299956639813; ///< 20 Hz, which switches "Frequency" off
constexpr double MaxLogFrequency = 4.301029995663981;  ///< 20 kHz
constexpr double WheelRange = 2.0;                     ///< semitones to either side
/// Cycles a sample. No honest pitch comes near; a stored note may be any number.
constexpr double MaxIncrement = 1048576.0;
constexpr const char* DefaultNote = "72";

} // namespace

TonvaleAudioEffectPlugin::TonvaleAudioEffectPlugin() : midiProcessor(*this)
{
    BuildParameters();
    shapeRecord.kind = MSpecialKind::SignalGenerator;
    shapeRecord.name = shapeRecord.secondName = "Shape";
    shapeRecord.data = &generator;
    shapeRecord.editorSlot = &editor;

    info.flags |= MPluginInfo::NotInPlace;
    info.parameters = parameters.data();
    info.parameterCount = ParameterCount;
    info.specials = &shapeRecord;
    info.specialCount = 1;
    info.midiProcessor = &midiProcessor;
}

void TonvaleAudioEffectPlugin::BuildParameters()
{
    using Record = MPluginParameterRecord;
    constexpr std::uint32_t Plain =
        Record::DefaultFlags & ~(Record::Recalculate | Record::Randomisable);
    constexpr std::uint32_t Pitched = Plain | Record::Recalculate;

    Record& dry = parameters[Dry];
    dry.SetFloat("Dry", 0.0, 1.0, 0.0);
    dry.help = "<name>Dry</name> defines input signal volume.";
    dry.tag = 51;
    Record& wet = parameters[Wet];
    wet.SetFloat("Wet", 0.0, 1.0, 0.7071067811865476);
    wet.help = "<name>Wet</name> defines output volume, thus volume of the generated signal.";
    for (Record* const gain : {&dry, &wet})
    {
        gain->flags = Plain;
        gain->law = MParameterLaw::Squared;
        gain->valueText = &valuetexts::SquaredGain;
    }

    Record& octaves = parameters[Octaves];
    octaves.SetInt("Octaves", -3, 3, 0);
    octaves.help = "<name>Octaves</name> defines global pitch change in octaves.";
    Record& semitones = parameters[Semitones];
    semitones.SetInt("Semitones", -12, 12, 0);
    semitones.help = "<name>Semitones</name> defines global pitch change in semitones.";
    for (Record* const steps : {&octaves, &semitones})
    {
        steps->flags = Pitched;
        steps->format = "{+0}";
    }

    Record& cents = parameters[Cents];
    cents.SetFloat("Cents", -100.0, 100.0, 0.0);
    cents.format = "{+0.1}";
    cents.help = "<name>Cents</name> defines global pitch change in cents of a semitone.";
    Record& pitch = parameters[Pitch];
    pitch.SetFloat("Pitch", -24.0, 24.0, 0.0);
    pitch.format = "{+0.02} semitones";
    pitch.help = "<name>Pitch</name> defines global pitch change, not limited to any units. It can "
                 "be manipulated using MIDI pitch-bend controller.";
    Record& width = parameters[Width];
    width.SetFloat("Width", -12.0, 12.0, 0.0);
    width.format = "{0.02} semitones";
    width.help = "<name>Width</name> defines pitch difference between channels. This can generally "
                 "be used to perform some kind of stereo expansion or make the track sound like it "
                 "has been recorded twice and panned hard left and hard right.";
    Record& frequency = parameters[Frequency];
    frequency.SetFloat("Frequency", MinLogFrequency, MaxLogFrequency, MinLogFrequency);
    frequency.valueText = &valuetexts::OptionalFrequency;
    frequency.help =
        "<name>Frequency</name> overrides frequency defined by note using piano editor.";
    for (Record* const smooth : {&cents, &pitch, &width, &frequency})
        smooth->flags = Pitched | Record::Modulatable;
}

std::int32_t TonvaleAudioEffectPlugin::InitProcessing(std::int32_t channels, std::int32_t rate)
{
    const MLockGuard guard(GetLock());
    kernels::FillDouble(phases.data(), 0.0, MaxChannels);
    channelCount = std::clamp(channels, 0, MaxChannels);
    sampleRate = rate;
    return 0;
}

void TonvaleAudioEffectPlugin::Update()
{
    const MLockGuard guard(GetLock());
    if (sampleRate <= 0)
        return;

    const double width = parameters[Width].Effective();
    const double semitones = PitchOffset() - width / channelCount * std::trunc(channelCount * 0.5);
    // For a single channel it is infinite or not a number, and not used.
    const double spread = std::exp2(width / (channelCount - 1) / 12.0);
    double increment = std::exp2(semitones * OctavesPerSemitone) * BaseFrequency() / sampleRate;

    for (std::size_t channel = 0; channel < static_cast<std::size_t>(channelCount); ++channel)
    {
        const bool isUsable = std::isfinite(increment) && increment <= MaxIncrement;
        increments[channel] = isUsable ? increment : 0.0;
        increment *= spread;
    }
    // A mono sound is mono again once "Width" is back at 0.
    if (std::abs(width) < 1e-50)
        std::fill(phases.begin() + 1, phases.end(), phases.front());
}

double TonvaleAudioEffectPlugin::PitchOffset() const noexcept
{
    double semitones = parameters[Semitones].Effective() + midiPitch;
    semitones += 12.0 * parameters[Octaves].Effective();
    return semitones + parameters[Cents].Effective() * 0.01 + parameters[Pitch].Effective();
}

double TonvaleAudioEffectPlugin::BaseFrequency() const noexcept
{
    const double logFrequency = parameters[Frequency].Effective();
    if (std::abs(logFrequency - MinLogFrequency) < 1e-6)
        return 440.0 * std::exp2((static_cast<double>(noteIndex) - 69.0) * OctavesPerSemitone);
    return std::pow(10.0, logFrequency);
}

void TonvaleAudioEffectPlugin::Process(MProcessingContext* /*context*/, const float* const* inputs,
                                       float* const* outputs, std::int32_t samples)
{
    const MLockGuard guard(GetLock());
    if (samples <= 0 || outputs == nullptr)
        return;

    const MRampedGain wet(parameters[Wet], 1.0, samples);
    const MRampedGain dry(parameters[Dry], 1.0, samples);
    for (std::size_t channel = 0; channel < static_cast<std::size_t>(channelCount); ++channel)
    {
        double& phase = phases[channel];
        float* const output = outputs[channel];
        kernels::ReadCycle(output, generator.GetTable().data(), phase, increments[channel],
                           samples);
        phase = std::fmod(phase + increments[channel] * samples, generator.Rate);
        if (output == nullptr)
            continue;
        if (inputs != nullptr && inputs[channel] != nullptr)
            MRampedGain::Mix(output, wet, inputs[channel], dry);
        else
            wet.Apply(output);
    }
}

void TonvaleAudioEffectPlugin::SetNote(int note)
{
    const MLockGuard guard(GetLock());
    noteIndex = std::int32_t{static_cast<std::int8_t>(note)};
    Update();
}

void TonvaleAudioEffectPlugin::SetWheel(double semitones)
{
    const MLockGuard guard(GetLock());
    midiPitch = semitones;
    Update();
}

void TonvaleAudioEffectPlugin::MIDIProcessorType::ProcessNote(int offset, double time, int channel,
                                                              int note, double velocity, bool on)
{
    if (on)
        effect.SetNote(note);
    else
        MMIDIProcessorBase::ProcessNote(offset, time, channel, note, velocity, on);
}

void TonvaleAudioEffectPlugin::MIDIProcessorType::ProcessPitchWheel(int offset, double time,
                                                                    int channel, double value)
{
    MMIDIProcessorBase::ProcessPitchWheel(offset, time, channel, value);
    effect.SetWheel(WheelRange * value);
}

bool TonvaleAudioEffectPlugin::Store(MXMLItem& item)
{
    MAudioEffectPlugin::Store(item);
    std::int32_t note = 0;
    // Blocks wait for the copy, and not for the text.
    const MSignalGeneratorState shape = [&]
    {
        const MLockGuard guard(GetLock());
        note = noteIndex;
        return generator.GetState();
    }();
    item.SetAttribute("NoteIndex", note);
    shape.Store(item.GetOrAddSubItem("Shape"));
    return true;
}

bool TonvaleAudioEffectPlugin::Load(MXMLItem& item)
{
    // Held to the end, so that no block hears half of the state.
    const MLockGuard guard(GetLock());
    if (item.HasSubItem("Shape"))
        generator.Load(item.GetSubItem()); // may refuse the state, with all as it was
    noteIndex = static_cast<std::int32_t>(item.GetAttribute("NoteIndex", DefaultNote).ToInteger());
    return MAudioEffectPlugin::Load(item);
}

std::function<void()> TonvaleAudioEffectPlugin::KeepState()
{
    struct Kept
    {
        MSignalGeneratorState shape;
        std::int32_t note;
        std::array<double, ParameterCount> values;
    };
    const MLockGuard guard(GetLock());
    const auto kept = std::make_shared<Kept>();
    kept->shape = generator.GetState();
    kept->note = noteIndex;
    std::ranges::transform(parameters, kept->values.begin(), &MPluginParameterRecord::GetNumber);
    return [this, kept]
    {
        const MLockGuard loading(GetLock());
        generator.SetState(kept->shape);
        noteIndex = kept->note;
        for (std::size_t i = 0; i < ParameterCount; ++i)
            parameters[i].SetNumber(kept->values[i]);
        Update();
        ResetParameterRamps();
    };
}
