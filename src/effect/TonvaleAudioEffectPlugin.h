#pragma once

#include <array>

#include "effect/MAudioEffectPlugin.h"
#include "effect/MPluginParameterRecord.h"
#include "effect/MPluginSpecialRecord.h"
#include "effect/MSignalGenerator.h"
#include "shell/midi/MMIDIProcessorBase.h"

class MSignalGeneratorEditor;

/// The oscillator: plays one cycle of a free shape on every channel, at the pitch of the last note
/// or of "Frequency", moved by the pitch parameters and spread over the channels by "Width", and
/// mixes it with the input under "Dry" and "Wet". It never stops; a note-off changes nothing.
class TonvaleAudioEffectPlugin final : public MAudioEffectPlugin
{
public:
    static constexpr int MaxChannels = 8;

    /// Indices of the published parameters.
    enum Parameter
    {
        Dry,
        Wet,
        Octaves,
        Semitones,
        Cents,
        Pitch,
        Width,
        Frequency,
        ParameterCount,
    };

    TonvaleAudioEffectPlugin();

    void Update() override;
    bool Store(MXMLItem& item) override;
    bool Load(MXMLItem& item) override;
    std::function<void()> KeepState() override;
    std::int32_t InitProcessing(std::int32_t channels, std::int32_t rate) override;
    void Process(MProcessingContext* context, const float* const* inputs, float* const* outputs,
                 std::int32_t samples) override;

private:
    /// Notes and the pitch wheel of all channels.
    class MIDIProcessorType final : public MMIDIProcessorBase
    {
    public:
        explicit MIDIProcessorType(TonvaleAudioEffectPlugin& owner) noexcept : effect(owner) {}

        /// A note-on ends here; a note-off goes on to the listeners.
        void ProcessNote(int offset, double time, int channel, int note, double velocity,
                         bool on) override;
        void ProcessPitchWheel(int offset, double time, int channel, double value) override;

    private:
        TonvaleAudioEffectPlugin& effect;
    };

    void BuildParameters();
    /// From the note, or "Frequency" where that overrides it, in Hz.
    double BaseFrequency() const noexcept;
    /// Semitones by which all channels stand above BaseFrequency, before the spread of "Width".
    double PitchOffset() const noexcept;
    void SetNote(int note);
    void SetWheel(double semitones);

    std::int32_t channelCount = 0;
    std::int32_t sampleRate = 0; ///< Hz
    std::array<MPluginParameterRecord, ParameterCount> parameters;
    MPluginSpecialRecord shapeRecord;
    MSignalGenerator generator;
    MSignalGeneratorEditor* editor = nullptr; ///< owned by the editor's window; null when closed
    std::int32_t noteIndex = 72;              ///< MIDI note; stored values are not limited
    std::array<double, MaxChannels> phases{}; ///< cycles, below 1 between blocks
    std::array<double, MaxChannels> increments{}; ///< cycles a sample
    double midiPitch = 0.0;                       ///< pitch wheel, semitones
    MIDIProcessorType midiProcessor;
};
