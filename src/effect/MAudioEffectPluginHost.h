#pragma once

#include "effect/MAudioEffectPlugin.h"
#include "effect/MPluginHost.h"

/// The partner of an audio effect.
class MAudioEffectPluginHost : public MPluginHost
{
public:
    using MPluginHost::MPluginHost;

    /// The effect itself, for direct calls; alive until command Destroy.
    MAudioEffectPlugin* GetPlugin() const noexcept
    {
        return static_cast<MAudioEffectPlugin*>(static_cast<MPlugin*>(GetPeerInstance()));
    }
};
