#include "tools/render/EffectRunner.h"

#include "effect/MPluginInfo.h"
#include "effect/MPluginParameterRecord.h"
#include "effect/MPluginSystem.h"
#include "effect/TonvaleAudioEffectPluginInterface.h"
#include "tools/render/Failure.h"

EffectRunner::EffectRunner()
{
    MPluginSystem system;
    const auto result = system.CreatePlugin(&TonvaleAudioEffectPluginInterface, "Tonvale", host);
    if (result != MPluginSystem::Result::Created)
        throw Failure("the oscillator cannot be created (" +
                      std::to_string(static_cast<int>(result)) + ")");
    if (MMIDIProcessorBase* const listener = GetInfo().midiProcessor)
        midiProcessor.AddListener(*listener, MMIDIProcessorBase::AllChannels);
}

EffectRunner::~EffectRunner()
{
    if (host)
        host->CallPlugin(MPluginCommand::Destroy);
}

MPluginParameterRecord* EffectRunner::FindParameter(const MString& name) const noexcept
{
    const MPluginInfo& info = GetInfo();
    for (std::int32_t i = 0; i < info.CountParameters(); ++i)
        if (MPluginParameterRecord* const record = info.FindParameter(i); record->name == name)
            return record;
    return nullptr;
}

void EffectRunner::NotifyChange(const MPluginParameterRecord& record)
{
    const MPluginInfo& info = GetInfo();
    for (std::int32_t i = 0; i < info.CountParameters(); ++i)
        if (info.FindParameter(i) == &record)
            Call(MPluginCommand::ParameterChanged, i);
}

void EffectRunner::Start(int channels, int rate)
{
    Call(MPluginCommand::InitProcessing, channels, rate);
    Call(MPluginCommand::InitProcessingDone);
}

void EffectRunner::Send(std::span<const std::uint8_t, 3> message)
{
    midiProcessor.ProcessMIDIEvent(0, message.data());
}

void EffectRunner::Process(const float* const* inputs, float* const* outputs, int samples)
{
    Call(MPluginCommand::Process, 0, reinterpret_cast<std::intptr_t>(inputs),
         reinterpret_cast<std::intptr_t>(outputs), samples);
}

void EffectRunner::Call(MPluginCommand command, std::intptr_t a0, std::intptr_t a1,
                        std::intptr_t a2, std::intptr_t a3)
{
    host->CallPlugin(command, MPluginCommandArguments(a0, a1, a2, a3));
}
