#include "tools/hosting/LoadPlugin.h"

#include "tools/hosting/HostedVst2.h"
#include "tools/hosting/HostedVst3.h"
#include "tools/hosting/PluginModule.h"

std::unique_ptr<HostedPlugin> LoadPlugin(const std::filesystem::path& path)
{
    return MakePlugin(PluginModule::Open(path));
}

std::unique_ptr<HostedPlugin> MakePlugin(std::shared_ptr<PluginModule> pluginModule)
{
    if (pluginModule->GetEntry() != nullptr)
        return std::make_unique<HostedVst2>(std::move(pluginModule));
    return std::make_unique<HostedVst3>(std::move(pluginModule));
}
