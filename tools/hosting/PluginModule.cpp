#include "tools/hosting/PluginModule.h"

#include <system_error>

#include "host/vst3/Vst3Factory.h"

namespace
{

namespace fs = std::filesystem;

#if defined(__x86_64__)
constexpr const char* BundleFolder = "x86_64-linux";
#elif defined(__aarch64__)
constexpr const char* BundleFolder = "aarch64-linux";
#else
constexpr const char* BundleFolder = "i386-linux";
#endif

MException Complaint(const fs::path& path, const std::string& reason)
{
    return MException(MString::FromUTF8("cannot load \"" + path.string() + "\": " + reason),
                      MException::BadArgument);
}

bool IsInsideBundle(const fs::path& library)
{
    return library.parent_path().filename() == BundleFolder &&
           library.parent_path().parent_path().filename() == "Contents";
}

fs::path FindLibrary(const fs::path& path)
{
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status))
        throw Complaint(path, std::make_error_code(std::errc::no_such_file_or_directory).message());
    // Without a folder in front, the system would look in its own places.
    fs::path whole = fs::absolute(path).lexically_normal();
    if (!fs::is_directory(status))
        return whole;
    const fs::path bundle = whole.has_filename() ? whole : whole.parent_path();
    const fs::path inner = fs::path("Contents") / BundleFolder / bundle.stem().concat(".so");
    if (!fs::exists(bundle / inner, error))
        throw Complaint(path, "it is a folder without \"" + inner.string() + '"');
    return bundle / inner;
}

} // namespace

std::shared_ptr<PluginModule> PluginModule::Open(const std::filesystem::path& path)
{
    return std::shared_ptr<PluginModule>(new PluginModule(path, FindLibrary(path)));
}

PluginModule::PluginModule(const std::filesystem::path& givenPath,
                           const std::filesystem::path& libraryPath)
    : path(givenPath)
{
    try
    {
        library.emplace(MString::FromUTF8(libraryPath.string()));
    }
    catch (const MException& failure)
    {
        std::string reason = failure.text.ToUTF8();
        if (const std::string prefix = libraryPath.string() + ": "; reason.starts_with(prefix))
            reason.erase(0, prefix.size());
        throw Failure(reason);
    }
    if (!IsInsideBundle(libraryPath))
        FindVst2();
    if (entry == nullptr)
        EnterVst3();
}

void PluginModule::FindVst2()
{
    entry = library->Find<Vst2::EntryFunction>("VSTPluginMain");
    if (entry == nullptr)
        entry = library->Find<Vst2::EntryFunction>("main");
}

void PluginModule::EnterVst3()
{
    const auto getFactory = library->Find<Vst3::IPluginFactory* (*)()>("GetPluginFactory");
    if (getFactory == nullptr)
        throw Failure("it is neither a VST2 nor a VST3 plugin");
    const auto enter = library->Find<bool (*)(void*)>("ModuleEntry");
    const auto exit = library->Find<bool (*)()>("ModuleExit");
    if (enter == nullptr || exit == nullptr)
        throw Failure("it has no \"ModuleEntry\" and \"ModuleExit\"");
    if (!enter(library->GetHandle()))
        throw Failure("the plugin refuses to be opened");
    factory = getFactory();
    if (factory == nullptr)
    {
        exit();
        throw Failure("the plugin has no factory");
    }
    leave = exit;
}

PluginModule::~PluginModule()
{
    if (factory != nullptr)
        factory->release();
    if (leave != nullptr)
        leave();
}

MException PluginModule::Failure(const std::string& reason) const
{
    return Complaint(path, reason);
}
