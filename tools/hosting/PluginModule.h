#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "foundation/modules/MLibrary.h"
#include "foundation/threads/MException.h"
#include "host/vst2/Vst2Interface.h"

namespace Vst3
{
class IPluginFactory;
} // namespace Vst3

/// A library of plugins that is open, entered as its standard wants it. Whatever comes from it
/// keeps it; with the last of them it is left and closed. One thread at a time.
class PluginModule
{
public:
    /// Opens a VST2 library, a VST3 bundle, or the library inside.
    /// @throws MException if @p path is nothing of the kind
    static std::shared_ptr<PluginModule> Open(const std::filesystem::path& path);

    ~PluginModule();
    PluginModule(const PluginModule&) = delete;
    PluginModule& operator=(const PluginModule&) = delete;

    /// As it was given to Open.
    const std::filesystem::path& GetPath() const noexcept { return path; }
    /// Null unless it is a VST2 library.
    Vst2::EntryFunction GetEntry() const noexcept { return entry; }
    /// Null unless it is a VST3 library. Borrowed.
    Vst3::IPluginFactory* GetFactory() const noexcept { return factory; }
    /// What cannot be done with this module, and why.
    MException Failure(const std::string& reason) const;

private:
    /// Both come from Open alone.
    PluginModule(const std::filesystem::path& givenPath, const std::filesystem::path& libraryPath);

    void FindVst2();
    void EnterVst3();

    std::filesystem::path path;
    std::optional<MLibrary> library;
    Vst2::EntryFunction entry = nullptr;
    Vst3::IPluginFactory* factory = nullptr; ///< holds a reference
    bool (*leave)() = nullptr;               ///< once it has been entered
};
