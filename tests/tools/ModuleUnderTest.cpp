#include "tests/tools/ModuleUnderTest.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "tools/hosting/LoadPlugin.h"

std::string NameStandard(const std::string& path)
{
    return path == TONVALE_VST2_MODULE ? "VST2" : "VST3";
}

SoundPair MakeInput(int samples)
{
    SoundPair input;
    for (int i = 0; i < samples; ++i)
    {
        input[0].push_back(0.2f + 0.1f * std::sin(0.01f * static_cast<float>(i)));
        input[1].push_back(-0.2f + 0.1f * std::sin(0.023f * static_cast<float>(i)));
    }
    return input;
}

float FindPeak(const Sound& sound)
{
    float peak = 0.0f;
    for (const float sample : sound)
        peak = std::isfinite(sample) ? std::max(peak, std::abs(sample)) : HUGE_VALF;
    return peak;
}

ModuleUnderTest::ModuleUnderTest(const std::shared_ptr<PluginModule>& pluginModule)
    : plugin(MakePlugin(pluginModule)),
      vst2(dynamic_cast<HostedVst2*>(plugin.get())),
      vst3(dynamic_cast<HostedVst3*>(plugin.get()))
{
}

void ModuleUnderTest::SetGain(const std::string& name, double gain) const
{
    for (int i = 0; i < plugin->GetParameterCount(); ++i)
        if (plugin->GetParameterName(i) == name)
            return plugin->Set01(i, std::pow(gain, 0.25));
    ADD_FAILURE() << name;
}

void ModuleUnderTest::Start(double dry, double wet) const
{
    SetGain("Dry", dry);
    SetGain("Wet", wet);
    plugin->Start(2, Rate, MaxBlock);
}

void ModuleUnderTest::SetUp(int rate, std::int32_t mode)
{
    processMode = mode;
    Vst3::ProcessSetup setup{mode, Vst3::kSample32, MaxBlock, static_cast<double>(rate)};
    if (vst2 != nullptr)
        vst2->Dispatch(Vst2::EffectOpcode::SetSampleRate, 0, 0, nullptr, static_cast<float>(rate));
    else
        EXPECT_EQ(vst3->GetProcessor()->setupProcessing(setup), Vst3::kResultOk);
}

void ModuleUnderTest::StartNote(int note)
{
    if (vst2 != nullptr)
    {
        Vst2::VstMidiEvent event;
        event.midiData = {0x90, static_cast<std::uint8_t>(note), 100};
        Vst2::VstEvents list;
        list.numEvents = 1;
        list.events[0] = reinterpret_cast<Vst2::VstEvent*>(&event);
        vst2->Dispatch(Vst2::EffectOpcode::ProcessEvents, 0, 0, &list);
        return;
    }
    Vst3::Event event{};
    event.type = Vst3::Event::kNoteOnEvent;
    event.noteOn = {0, static_cast<std::int16_t>(note), 0.0f, 0.8f, 0, -1};
    events.addEvent(event);
}

void ModuleUnderTest::Call(float** inputs, float** outputs, int samples)
{
    if (vst2 != nullptr)
    {
        Vst2::AEffect* const effect = vst2->GetEffect();
        return effect->processReplacing(effect, inputs, outputs, samples);
    }
    Vst3::AudioBusBuffers input{.numChannels = 2, .silenceFlags = 0, .channelBuffers32 = inputs};
    Vst3::AudioBusBuffers output{.numChannels = 2, .silenceFlags = 3, .channelBuffers32 = outputs};
    Vst3::ProcessData data{};
    data.processMode = processMode;
    data.symbolicSampleSize = Vst3::kSample32;
    data.numSamples = samples;
    data.numInputs = inputs != nullptr ? 1 : 0;
    data.inputs = inputs != nullptr ? &input : nullptr;
    data.numOutputs = outputs != nullptr ? 1 : 0;
    data.outputs = outputs != nullptr ? &output : nullptr;
    data.inputEvents = samples > 0 ? &events : nullptr;
    EXPECT_EQ(vst3->GetProcessor()->process(data), Vst3::kResultOk);
    EXPECT_EQ(output.silenceFlags, samples > 0 && outputs != nullptr ? 0u : 3u);
    if (samples > 0)
        events.events.clear();
}

SoundPair ModuleUnderTest::Play(SoundPair input, const std::vector<int>& blocks, bool isInPlace)
{
    const SoundPair before = input;
    const std::size_t length = input[0].size();
    SoundPair apart = {Sound(length), Sound(length)};
    SoundPair& output = isInPlace ? input : apart;
    std::size_t at = 0;
    for (std::size_t block = 0; at < length; ++block)
    {
        const int samples = std::min(blocks[block % blocks.size()], static_cast<int>(length - at));
        float* inputs[] = {input[0].data() + at, input[1].data() + at};
        float* outputs[] = {output[0].data() + at, output[1].data() + at};
        Call(inputs, outputs, samples);
        at += static_cast<std::size_t>(samples);
    }
    EXPECT_TRUE(isInPlace || input == before) << "the input was written to";
    return output;
}
