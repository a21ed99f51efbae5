#pragma once

#include "effect/MPluginCommands.h"
#include "foundation/modules/Export.h"

/// The entry point of the oscillator. A null @p instance creates one; command GetInstance answers
/// the instance, any other is the object's to answer. 0 if there is no memory. Never throws.
extern "C" TONVALE_EXPORT std::intptr_t
TonvaleAudioEffectPluginInterface(void* instance, std::int32_t command,
                                  const MPluginCommandArguments* arguments) noexcept;
