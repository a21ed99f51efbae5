#include "tools/render/PluginRunner.h"

#include <cmath>

#include "effect/MAudioEffectPlugin.h"
#include "effect/MPluginInfo.h"
#include "effect/MPluginParameterRecord.h"
#include "effect/MPluginSpecialRecord.h"
#include "effect/MSignalGenerator.h"
#include "foundation/xml/MStorageDescriptor.h"
#include "tools/render/Failure.h"

PluginRunner::PluginRunner()
    : plugin(CreateAudioPlugin()),
      shell(dynamic_cast<MAudioEffectPluginToAudioPluginAdapter*>(plugin.get()))
{
    if (shell == nullptr)
        throw Failure("the plugin cannot be created");
}

const MPluginInfo& PluginRunner::GetInfo() const noexcept
{
    return shell->GetEffect()->GetInfo();
}

const MPluginParameterRecord* PluginRunner::FindParameter(const MString& name) const noexcept
{
    const MPluginInfo& info = GetInfo();
    for (std::int32_t i = 0; i < info.CountParameters(); ++i)
        if (MPluginParameterRecord* const record = info.FindParameter(i); record->name == name)
            return record;
    return nullptr;
}

std::vector<PluginParameter> PluginRunner::GetParameters() const
{
    std::vector<PluginParameter> parameters;
    parameters.reserve(static_cast<std::size_t>(plugin->GetParameterCount()));
    for (int index = 0; index < plugin->GetParameterCount(); ++index)
        parameters.push_back({plugin.get(), index});
    return parameters;
}

void PluginRunner::LoadState(MXMLItem& state)
{
    plugin->Store({.storing = false, .item = state});
}

void PluginRunner::StoreState(MXMLItem& state)
{
    plugin->Store({.storing = true, .item = state});
}

std::span<const float> PluginRunner::GetCycle() const
{
    for (const MPluginSpecialRecord& special :
         std::span(GetInfo().specials, static_cast<std::size_t>(GetInfo().specialCount)))
        if (special.kind == MSpecialKind::SignalGenerator)
            return static_cast<const MSignalGenerator*>(special.data)
                ->GetTable()
                .first<MSignalGenerator::TableLength>();
    throw Failure("the oscillator has no shape");
}

void PluginRunner::Start(int channels, int rate, int maxBlock)
{
    if (!plugin->SetChannels(channels, channels) || !plugin->SetHostSampleRate(rate))
        throw Failure("the plugin refuses " + std::to_string(channels) + " channels at " +
                      std::to_string(rate) + " Hz");
    plugin->SetMaxBlock(maxBlock);
    plugin->InitProcessing();
    position = 0;
    TellTime();
}

void PluginRunner::TellTime()
{
    constexpr double DefaultTempo = 120.0; // for event times alone
    constexpr double QuartersABar = 4.0;
    const double quarters =
        tempo ? static_cast<double>(position) / plugin->GetHostSampleRate() * *tempo / 60.0 : 0.0;
    plugin->GetTime() = {.position = quarters,
                         .tempo = tempo.value_or(0.0),
                         .barStart = std::floor(quarters / QuartersABar) * QuartersABar,
                         .playing = tempo.has_value(),
                         .transportChanged = tempo && position == 0};
    plugin->SetTime(tempo.value_or(DefaultTempo), plugin->GetHostSampleRate(), quarters);
}

void PluginRunner::Send(std::span<const std::uint8_t, 3> message)
{
    plugin->ProcessMIDIEvent(0, message.data());
}

void PluginRunner::Process(const Pointers<const float>& inputs, const Pointers<float>& outputs,
                           int samples)
{
    plugin->ProcessAudio(inputs.data(), outputs.data(), samples, true);
    position += samples;
    TellTime(); // also for what is sent before the next block
}
