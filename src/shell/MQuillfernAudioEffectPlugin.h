#pragma once

#include "shell/MAudioEffectPluginToAudioPluginAdapter.h"

/// The shell of this maker's plugins: adds the higher rate, which the user sets, to the state.
class MQuillfernAudioEffectPlugin final : public MAudioEffectPluginToAudioPluginAdapter
{
protected:
    void StoreState(const MStorageDescriptor& storage) override;
};
