#pragma once

#include <filesystem>
#include <memory>

#include "tools/hosting/HostedPlugin.h"

class PluginModule;

/// Makes the first plugin of the module at @p path, see PluginModule::Open.
/// @throws MException if there is none, or it cannot be made
std::unique_ptr<HostedPlugin> LoadPlugin(const std::filesystem::path& path);
/// The same of one that is open.
std::unique_ptr<HostedPlugin> MakePlugin(std::shared_ptr<PluginModule> pluginModule);
