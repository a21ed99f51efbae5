#include "effect/MPluginSystem.h"

MPluginSystem::~MPluginSystem()
{
    for (MAudioEffectPluginHost* const host : createdHosts)
        host->system = nullptr;
}

MPluginSystem::Result MPluginSystem::CreatePlugin(MPluginCall entryPoint, const MString& name,
                                                  std::unique_ptr<MAudioEffectPluginHost>& host)
{
    if (entryPoint == nullptr)
        return Result::NoEntryPoint;

    auto created = std::make_unique<MAudioEffectPluginHost>(entryPoint);
    MPluginHost* const peer = created.get();
    created->peerInstance = reinterpret_cast<void*>(created->CallPlugin(
        MPluginCommand::SetHost,
        MPluginCommandArguments(reinterpret_cast<std::intptr_t>(peer),
                                reinterpret_cast<std::intptr_t>(&MPluginHost::DispatchCall))));
    if (created->peerInstance == nullptr)
        return Result::NoPlugin;

    created->pluginInfo =
        reinterpret_cast<MPluginInfo*>(created->CallPlugin(MPluginCommand::GetInfo));
    if (created->pluginInfo == nullptr)
    {
        created->CallPlugin(MPluginCommand::Destroy);
        return Result::NoInfo;
    }

    created->OnCreated();
    created->CallPlugin(MPluginCommand::Start);
    created->system = this;
    created->pluginName = name;
    createdHosts.push_back(created.get());
    host = std::move(created);
    return Result::Created;
}
