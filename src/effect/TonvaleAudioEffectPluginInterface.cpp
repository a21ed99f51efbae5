#include "effect/TonvaleAudioEffectPluginInterface.h"

#include <new>

#include "effect/TonvaleAudioEffectPlugin.h"
#include "foundation/threads/MGuard.h"

std::intptr_t TonvaleAudioEffectPluginInterface(void* instance, std::int32_t command,
                                                const MPluginCommandArguments* arguments) noexcept
{
    return MGuarded("TonvaleAudioEffectPluginInterface", std::intptr_t{0},
                    [&]() -> std::intptr_t
                    {
                        MPlugin* const plugin = instance != nullptr
                                                    ? static_cast<MPlugin*>(instance)
                                                    : new (std::nothrow) TonvaleAudioEffectPlugin;
                        if (plugin == nullptr)
                            return 0;
                        if (command == static_cast<std::int32_t>(MPluginCommand::GetInstance))
                            return reinterpret_cast<std::intptr_t>(plugin);
                        return plugin->Dispatch(command, arguments);
                    });
}
