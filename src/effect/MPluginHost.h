#pragma once

#include <array>
#include <cstdint>

#include "effect/MPluginCommands.h"
#include "foundation/strings/MString.h"
#include "foundation/threads/MEventTarget.h"

class MPluginSystem;
struct MPluginInfo;

/// The partner of a plugin on the side of whoever drives it: it holds both ends of the calls and
/// answers those of the plugin.
class MPluginHost : public MEventTarget
{
public:
    /// Answers one command of the plugin. @p a0 is 0 for commands that pass nothing.
    using Service = std::intptr_t (*)(MPluginHost& host, std::intptr_t a0);

    /// What a service needs to find its owner.
    struct Child
    {
        std::intptr_t tag = 0;
        void* value = nullptr;
        void* secondValue = nullptr;
    };

    explicit MPluginHost(MPluginCall entryPoint) noexcept : peerCall(entryPoint) {}

    /// The peer call that plugins get: @p instance is the host. -1 for an unknown command.
    static std::intptr_t DispatchCall(void* instance, std::int32_t command,
                                      const MPluginCommandArguments* arguments) noexcept;

    /// The plugin exists and its info is known.
    virtual void OnCreated() {}
    virtual std::intptr_t OnForward(std::intptr_t /*a0*/) { return 0; }

    /// Offers @p service, or none for null, under @p command (Edited to RefreshEditors).
    void SetService(MPluginHostCommand command, Service service) noexcept;
    /// Sends a command to the plugin.
    std::intptr_t
    CallPlugin(MPluginCommand command,
               const MPluginCommandArguments& arguments = MPluginCommandArguments()) noexcept;
    /// The plugin, whose creation is MPluginSystem's work; null before.
    void* GetPeerInstance() const noexcept { return peerInstance; }
    MPluginInfo* GetPluginInfo() const noexcept { return pluginInfo; }

private:
    friend MPluginSystem;

    std::intptr_t Dispatch(std::int32_t command, const MPluginCommandArguments* arguments);

    MPluginCall peerCall; ///< the plugin's entry point
    void* peerInstance = nullptr;
    MString firstText;
    MString secondText;
    std::array<Service, 7> services{}; ///< of commands 1 to 7
    MPluginInfo* pluginInfo = nullptr; ///< in the plugin
    MString pluginName;
    MPluginSystem* system = nullptr; ///< null when it is gone

public:
    std::array<Child, 8> children;
};
