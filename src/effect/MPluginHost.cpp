#include "effect/MPluginHost.h"

#include "foundation/threads/MGuard.h"

std::intptr_t MPluginHost::DispatchCall(void* instance, std::int32_t command,
                                        const MPluginCommandArguments* arguments) noexcept
{
    return MGuarded("MPluginHost::DispatchCall", std::intptr_t{0},
                    [&]
                    { return static_cast<MPluginHost*>(instance)->Dispatch(command, arguments); });
}

std::intptr_t MPluginHost::Dispatch(std::int32_t command, const MPluginCommandArguments* arguments)
{
    const std::intptr_t a0 = arguments != nullptr ? arguments->pairs[0].value : 0;
    if (command == static_cast<std::int32_t>(MPluginHostCommand::Forward))
        return OnForward(a0);
    if (command < 0 || command > static_cast<std::int32_t>(services.size()))
        return -1;

    const Service service = services[static_cast<std::size_t>(command - 1)];
    if (service == nullptr)
        return 0;
    if (command != static_cast<std::int32_t>(MPluginHostCommand::Reserved3))
        return service(*this, 0);
    service(*this, a0);
    return 0;
}

void MPluginHost::SetService(MPluginHostCommand command, Service service) noexcept
{
    const auto number = static_cast<std::int32_t>(command);
    if (number >= 1 && number <= static_cast<std::int32_t>(services.size()))
        services[static_cast<std::size_t>(number - 1)] = service;
}

std::intptr_t MPluginHost::CallPlugin(MPluginCommand command,
                                      const MPluginCommandArguments& arguments) noexcept
{
    return peerCall(peerInstance, static_cast<std::int32_t>(command), &arguments);
}
