#pragma once

#include <memory>
#include <vector>

#include "effect/MAudioEffectPluginHost.h"

/// Creates plugins behind their entry points. Short-lived, on the stack of whoever needs one.
class MPluginSystem
{
public:
    enum class Result
    {
        Created = 0,
        NoEntryPoint = 4,
        NoPlugin = 5,
        NoInfo = 6,
    };

    MPluginSystem() = default;
    ~MPluginSystem();
    MPluginSystem(const MPluginSystem&) = delete;
    MPluginSystem& operator=(const MPluginSystem&) = delete;

    /// Creates, informs and starts the plugin behind @p entryPoint and hands out its host in
    /// @p host, which otherwise stays. The caller ends the plugin by command Destroy before it
    /// deletes the host, and the host after this system.
    Result CreatePlugin(MPluginCall entryPoint, const MString& name,
                        std::unique_ptr<MAudioEffectPluginHost>& host);

private:
    std::vector<MAudioEffectPluginHost*> createdHosts;
};
