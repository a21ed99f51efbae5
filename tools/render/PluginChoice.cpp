#include "tools/render/PluginChoice.h"

#include <cstdlib>
#include <filesystem>

#include "foundation/modules/MModule.h"
#include "tools/hosting/LoadPlugin.h"
#include "tools/render/InProcessPlugin.h"
#include "tools/render/RenderOptions.h"

namespace
{

constexpr const char* OwnBundle = "Tonvale.vst3";

/// In the build and where it is installed; empty if it is nowhere.
std::filesystem::path FindOwnBundle()
{
    const std::filesystem::path program = MModule::Get().GetPath().ToUTF8();
    const std::filesystem::path prefix = program.parent_path().parent_path();
    std::vector<std::filesystem::path> folders = {prefix / "vst3", prefix / "lib" / "vst3"};
    if (const char* const home = std::getenv("HOME")) // NOLINT(concurrency-mt-unsafe): one thread
        folders.push_back(std::filesystem::path(home) / ".vst3");
    for (const std::filesystem::path& folder : folders)
        if (std::error_code ignored; std::filesystem::is_directory(folder / OwnBundle, ignored))
            return folder / OwnBundle;
    return {};
}

std::string Title(const HostedPlugin& plugin)
{
    std::string title = plugin.GetName();
    if (const std::string version = plugin.GetVersion(); !version.empty())
        title += ' ' + version;
    return title;
}

ChosenPlugin Load(const std::filesystem::path& path)
{
    auto plugin = LoadPlugin(path);
    std::string origin = Title(*plugin) + " as " + plugin->GetFormat();
    return {std::move(plugin), nullptr, std::move(origin)};
}

ChosenPlugin Embed(const std::string& reason)
{
    auto plugin = std::make_unique<InProcessPlugin>();
    InProcessPlugin* const inside = plugin.get();
    std::string origin = Title(*plugin) + " in process" + reason;
    return {std::move(plugin), inside, std::move(origin)};
}

} // namespace

ChosenPlugin ChoosePlugin(const RenderOptions& options)
{
    if (options.plugin)
        return Load(*options.plugin);
    if (options.isInProcess)
        return Embed({});
    if (const char* const option = options.FindInsideOption())
        return Embed(std::string(", for ") + option);
    if (options.channels >= RenderOptions::MinSurroundChannels)
        return Embed(", for --channels " + std::to_string(options.channels));
    const std::filesystem::path bundle = FindOwnBundle();
    return bundle.empty() ? Embed(std::string(", as there is no ") + OwnBundle) : Load(bundle);
}
