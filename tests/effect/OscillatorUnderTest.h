#pragma once

#include <memory>
#include <vector>

#include "effect/MAudioEffectPluginHost.h"
#include "effect/MPluginParameterRecord.h"
#include "effect/MSignalGenerator.h"
#include "effect/TonvaleAudioEffectPlugin.h"
#include "shell/midi/MMIDIProcessorBase.h"

/// The oscillator as a shell drives it: created through its entry point, moved by records and
/// commands. "Wet" starts at full level.
class OscillatorUnderTest
{
public:
    using Blocks = std::vector<std::vector<float>>; ///< one a channel

    explicit OscillatorUnderTest(int channels = 1, int rate = 48000);
    ~OscillatorUnderTest();
    OscillatorUnderTest(const OscillatorUnderTest&) = delete;
    OscillatorUnderTest& operator=(const OscillatorUnderTest&) = delete;

    void Init(int channels, int rate);
    MPluginParameterRecord& Record(int index);
    /// Writes the value and tells the effect.
    void Set(int index, double value);
    MSignalGenerator& Generator();
    void PlayShape(double shape);
    MMIDIProcessorBase& MIDI();
    std::intptr_t Call(MPluginCommand command, std::intptr_t a0 = 0);

    Blocks Play(int samples, const Blocks& inputs = {});
    /// Frequency of @p channel in Hz, at most a thirtieth of the rate, counted on a falling ramp
    /// whose height is the phase: one second resolves 1e-6 Hz. Leaves the shape at "Saw".
    double MeasureFrequency(int channel = 0);

private:
    std::unique_ptr<MAudioEffectPluginHost> host;
    int channelCount = 0;
    int sampleRate = 0;
};
