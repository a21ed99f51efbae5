#pragma once

#include <memory>
#include <string>

#include "tools/hosting/HostedPlugin.h"

class InProcessPlugin;
struct RenderOptions;

/// The plugin that the options ask for.
struct ChosenPlugin
{
    std::unique_ptr<HostedPlugin> plugin;
    InProcessPlugin* inside; ///< the same; null if it lies behind a host standard
    std::string origin;      ///< "Tonvale 5.03 as VST3", with what the user should know about that
};

/// @throws MException if that of --plugin cannot be had
ChosenPlugin ChoosePlugin(const RenderOptions& options);
