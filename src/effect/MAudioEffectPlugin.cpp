#include "effect/MAudioEffectPlugin.h"

std::intptr_t MAudioEffectPlugin::Dispatch(std::int32_t command,
                                           const MPluginCommandArguments* arguments)
{
    const auto value = [arguments](std::size_t index)
    { return arguments != nullptr ? arguments->pairs[index].value : 0; };
    const auto number = [value](std::size_t index)
    { return static_cast<std::int32_t>(value(index)); };

    switch (static_cast<MPluginCommand>(command))
    {
    case MPluginCommand::InitProcessing:
    {
        const std::int32_t result = InitProcessing(number(0), number(1));
        Update();
        ResetParameterRamps();
        return result;
    }
    case MPluginCommand::Process:
        Process(reinterpret_cast<MProcessingContext*>(value(0)),
                reinterpret_cast<const float* const*>(value(1)),
                reinterpret_cast<float* const*>(value(2)), number(3));
        return 0;
    case MPluginCommand::QueryA:
        return GetQueryA();
    case MPluginCommand::GetLatency:
        return GetLatency();
    case MPluginCommand::Notify:
        Notify(value(0));
        return 0;
    case MPluginCommand::GetTail:
        return GetTail();
    case MPluginCommand::ProcessUpdate:
        ProcessUpdate();
        return 0;
    case MPluginCommand::InitProcessingDone:
        InitProcessingDone();
        return 0;
    default:
        return MPlugin::Dispatch(command, arguments);
    }
}
