#include "tools/render/InProcessPlugin.h"

#include <algorithm>
#include <array>
#include <utility>

#include "effect/MAudioEffectPlugin.h"
#include "effect/MPluginInfo.h"
#include "effect/MPluginParameterRecord.h"
#include "effect/MPluginSpecialRecord.h"
#include "effect/MSignalGenerator.h"
#include "host/PluginState.h"
#include "tools/render/Failure.h"

InProcessPlugin::InProcessPlugin()
    : plugin(CreateAudioPlugin()),
      shell(dynamic_cast<MQuillfernAudioEffectPlugin*>(plugin.get()))
{
    if (shell == nullptr)
        throw Failure("the plugin cannot be created");
}

InProcessPlugin::~InProcessPlugin() = default;

const MPluginInfo& InProcessPlugin::GetInfo() const noexcept
{
    return shell->GetEffect()->GetInfo();
}

const MPluginParameterRecord* InProcessPlugin::FindParameter(const MString& name) const noexcept
{
    const MPluginInfo& info = GetInfo();
    for (std::int32_t i = 0; i < info.CountParameters(); ++i)
        if (MPluginParameterRecord* const record = info.FindParameter(i); record->name == name)
            return record;
    return nullptr;
}

std::span<const float> InProcessPlugin::GetCycle() const
{
    for (const MPluginSpecialRecord& special :
         std::span(GetInfo().specials, static_cast<std::size_t>(GetInfo().specialCount)))
        if (special.kind == MSpecialKind::SignalGenerator)
            return static_cast<const MSignalGenerator*>(special.data)
                ->GetTable()
                .first<MSignalGenerator::TableLength>();
    throw Failure("the oscillator has no shape");
}

std::string InProcessPlugin::GetName() const
{
    return plugin->GetName().ToUTF8();
}

std::string InProcessPlugin::GetMaker() const
{
    return plugin->GetMaker().ToUTF8();
}

std::string InProcessPlugin::GetVersion() const
{
    return TONVALE_VERSION;
}

std::string InProcessPlugin::GetParameterName(int index) const
{
    return plugin->GetParameterName(index).ToUTF8();
}

std::string InProcessPlugin::GetText(int index) const
{
    return plugin->GetParameterValueName(index).ToUTF8();
}

std::string InProcessPlugin::GetTextAt(int index, double value01)
{
    return plugin->GetParameterValueNameFrom01(index, value01).ToUTF8();
}

std::optional<double> InProcessPlugin::Parse(int index, const std::string& text)
{
    return plugin->ParseParameterValueName(index, MString::FromUTF8(text));
}

int InProcessPlugin::CountSteps(int index) const
{
    const MAutomationType type = plugin->GetParameterType(index);
    if (type != MAutomationType::Int)
        return type == MAutomationType::Bool ? 1 : 0;
    const MPluginParameterRecord* const record = FindParameter(plugin->GetParameterName(index));
    return record != nullptr ? record->range.asInt.max - record->range.asInt.min : 0;
}

bool InProcessPlugin::SetBypassed(bool on)
{
    plugin->SetBypassed(on);
    return true;
}

std::vector<std::byte> InProcessPlugin::SaveState()
{
    const MMemoryStream chunk = pluginstate::Save(*plugin);
    return {chunk.GetData().begin(), chunk.GetData().end()};
}

void InProcessPlugin::LoadState(std::span<const std::byte> state)
{
    MMemoryStream stream = MMemoryStream::Refer(state);
    pluginstate::Load(*plugin, stream);
}

void InProcessPlugin::Start(int channels, int rate, int maxBlock)
{
    if (!plugin->SetChannels(channels, channels) || !plugin->SetHostSampleRate(rate))
        throw Failure("the plugin refuses " + std::to_string(channels) + " channels at " +
                      std::to_string(rate) + " Hz");
    plugin->SetMaxBlock(maxBlock);
    plugin->InitProcessing();
    clock.Start(rate);
    TellTime();
}

void InProcessPlugin::TellTime()
{
    constexpr double DefaultTempo = 120.0; // for event times alone
    const double quarters = clock.GetQuarters();
    plugin->GetTime() = {.position = quarters,
                         .tempo = clock.tempo.value_or(0.0),
                         .barStart = clock.GetBarStart(),
                         .playing = clock.IsPlaying(),
                         .transportChanged = clock.IsStarting()};
    plugin->SetTime(clock.tempo.value_or(DefaultTempo), clock.rate, quarters);
}

void InProcessPlugin::Send(std::span<const std::uint8_t, 3> message, int offset)
{
    plugin->ProcessMIDIEvent(offset, message.data());
}

void InProcessPlugin::Process(std::span<const float* const> inputs, std::span<float* const> outputs,
                              int samples)
{
    if (std::cmp_less(silence.size(), samples))
        silence.resize(static_cast<std::size_t>(samples));
    std::array<const float*, MAudioPlugin::MaxChannels> in{};
    std::array<float*, MAudioPlugin::MaxChannels> out{};
    std::fill_n(in.begin(), outputs.size(), silence.data());
    std::ranges::copy(inputs, in.begin());
    std::ranges::copy(outputs, out.begin());
    plugin->ProcessAudio(in.data(), out.data(), samples, true);
    clock.samples += samples;
    TellTime(); // also for what is sent before the next block
}
