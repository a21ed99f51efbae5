#include "tools/render/EffectRunner.h"

#include "effect/MPluginInfo.h"
#include "effect/MPluginParameterRecord.h"
#include "effect/MPluginSpecialRecord.h"
#include "effect/MPluginSystem.h"
#include "effect/MSignalGenerator.h"
#include "effect/TonvaleAudioEffectPluginInterface.h"
#include "tools/render/Failure.h"

EffectRunner::EffectRunner()
{
    MPluginSystem system;
    const auto result = system.CreatePlugin(&TonvaleAudioEffectPluginInterface, "Tonvale", host);
    if (result != MPluginSystem::Result::Created)
        throw Failure("the oscillator cannot be created (" +
                      std::to_string(static_cast<int>(result)) + ")");
    parameters.Wire(*host->GetPlugin(), *this);
    if (MMIDIProcessorBase* const listener = GetInfo().midiProcessor)
        midiProcessor.AddListener(*listener, MMIDIProcessorBase::AllChannels);
}

EffectRunner::~EffectRunner()
{
    parameters = {}; // they point into the effect
    if (host)
        host->CallPlugin(MPluginCommand::Destroy);
}

const MPluginParameterRecord* EffectRunner::FindParameter(const MString& name) const noexcept
{
    const MPluginInfo& info = GetInfo();
    for (std::int32_t i = 0; i < info.CountParameters(); ++i)
        if (MPluginParameterRecord* const record = info.FindParameter(i); record->name == name)
            return record;
    return nullptr;
}

std::vector<AdapterValue> EffectRunner::GetParameters() const
{
    std::vector<AdapterValue> values;
    for (MAutomationAdapter* const adapter : parameters.GetAdapters())
        for (int index = 0; index < adapter->GetCount(); ++index)
            values.push_back({adapter, index});
    return values;
}

void EffectRunner::LoadState(MXMLItem& state)
{
    if (Call(MPluginCommand::Load, reinterpret_cast<std::intptr_t>(&state)) != 1)
        throw Failure("the oscillator refuses the state");
}

void EffectRunner::StoreState(MXMLItem& state)
{
    if (Call(MPluginCommand::Store, reinterpret_cast<std::intptr_t>(&state)) != 1)
        throw Failure("the oscillator cannot tell its state");
}

std::span<const float> EffectRunner::GetCycle() const
{
    for (const MPluginSpecialRecord& special :
         std::span(GetInfo().specials, static_cast<std::size_t>(GetInfo().specialCount)))
        if (special.kind == MSpecialKind::SignalGenerator)
            return static_cast<const MSignalGenerator*>(special.data)
                ->GetTable()
                .first<MSignalGenerator::TableLength>();
    throw Failure("the oscillator has no shape");
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

std::intptr_t EffectRunner::Call(MPluginCommand command, std::intptr_t a0, std::intptr_t a1,
                                 std::intptr_t a2, std::intptr_t a3)
{
    return host->CallPlugin(command, MPluginCommandArguments(a0, a1, a2, a3));
}
