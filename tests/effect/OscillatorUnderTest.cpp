#include "OscillatorUnderTest.h"

#include <algorithm>

#include "effect/MPluginSystem.h"
#include "effect/TonvaleAudioEffectPluginInterface.h"

OscillatorUnderTest::OscillatorUnderTest(int channels, int rate)
{
    MPluginSystem system;
    system.CreatePlugin(&TonvaleAudioEffectPluginInterface, "Tonvale", host);
    Record(TonvaleAudioEffectPlugin::Wet).range.asFloat.value = 1.0;
    Init(channels, rate);
}

OscillatorUnderTest::~OscillatorUnderTest()
{
    Call(MPluginCommand::Destroy);
}

void OscillatorUnderTest::Init(int channels, int rate)
{
    channelCount = channels;
    sampleRate = rate;
    host->CallPlugin(MPluginCommand::InitProcessing, MPluginCommandArguments(channels, rate));
}

MPluginParameterRecord& OscillatorUnderTest::Record(int index)
{
    return *host->GetPluginInfo()->FindParameter(index);
}

void OscillatorUnderTest::Set(int index, double value)
{
    MPluginParameterRecord& record = Record(index);
    if (record.type == MParameterType::Int)
        record.range.asInt.value = static_cast<std::int32_t>(value);
    else
        record.range.asFloat.value = value;
    Call(MPluginCommand::ParameterChanged, index);
}

MSignalGenerator& OscillatorUnderTest::Generator()
{
    return *static_cast<MSignalGenerator*>(host->GetPluginInfo()->specials[0].data);
}

void OscillatorUnderTest::PlayShape(double shape)
{
    Generator().Shape = shape;
    Generator().Rebuild();
}

MMIDIProcessorBase& OscillatorUnderTest::MIDI()
{
    return *host->GetPluginInfo()->midiProcessor;
}

std::intptr_t OscillatorUnderTest::Call(MPluginCommand command, std::intptr_t a0)
{
    return host->CallPlugin(command, MPluginCommandArguments(a0));
}

OscillatorUnderTest::Blocks OscillatorUnderTest::Play(int samples, const Blocks& inputs)
{
    Blocks outputs(static_cast<std::size_t>(channelCount),
                   std::vector<float>(static_cast<std::size_t>(samples), -9.0f));
    std::vector<const float*> inputPointers;
    for (const auto& block : inputs)
        inputPointers.push_back(block.data());
    std::vector<float*> outputPointers;
    for (auto& block : outputs)
        outputPointers.push_back(block.data());
    host->CallPlugin(MPluginCommand::Process,
                     MPluginCommandArguments(
                         0,
                         inputs.empty() ? 0 : reinterpret_cast<std::intptr_t>(inputPointers.data()),
                         reinterpret_cast<std::intptr_t>(outputPointers.data()), samples));
    return outputs;
}

double OscillatorUnderTest::MeasureFrequency(int channel)
{
    PlayShape(12.0);
    const int samples = std::min(sampleRate, 96000);
    const std::vector<float> ramp = Play(samples)[static_cast<std::size_t>(channel)];
    double cycles = 0.0;
    bool isLow = false;
    double firstPhase = -1.0;
    std::size_t firstAt = 0;
    double frequency = 0.0;
    for (std::size_t i = 1; i < ramp.size(); ++i)
    {
        if (isLow && ramp[i] > 0.6f)
            cycles += 1.0;
        isLow = ramp[i] < 0.4f || (isLow && ramp[i] <= 0.6f);
        // Samples in the jump, or close to it, tell no phase.
        if (ramp[i] >= ramp[i - 1] || ramp[i] < 0.1f || ramp[i] > 0.9f)
            continue;
        const double phase = cycles + (1.0 - static_cast<double>(ramp[i]));
        if (firstPhase < 0.0)
        {
            firstPhase = phase;
            firstAt = i;
        }
        else
            frequency = (phase - firstPhase) * sampleRate / static_cast<double>(i - firstAt);
    }
    return frequency;
}
