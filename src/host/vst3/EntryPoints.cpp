// The entry points of the module.

#include <atomic>

#include "foundation/modules/Export.h"
#include "foundation/modules/MModule.h"
#include "host/vst3/Vst3PluginFactory.h"

namespace
{

/// Hosts may enter several times, and leave as often.
std::atomic<int> entries = 0;

bool Enter() noexcept
{
    OstrelDLLInitialize();
    entries.fetch_add(1);
    return true;
}

/// Returns false for one exit too many. Threads and the like end with the last instance.
bool Leave() noexcept
{
    int before = entries.load();
    while (before > 0)
        if (entries.compare_exchange_weak(before, before - 1))
            return true;
    return false;
}

} // namespace

extern "C" TONVALE_EXPORT Vst3::IPluginFactory* GetPluginFactory() noexcept
{
    Vst3::PluginFactory& factory = Vst3::PluginFactory::Get();
    factory.addRef();
    return &factory;
}

// What a module is entered by depends on the system; hosts ask for theirs alone.

extern "C" TONVALE_EXPORT bool ModuleEntry(void* /*library*/) noexcept
{
    return Enter();
}

extern "C" TONVALE_EXPORT bool ModuleExit() noexcept
{
    return Leave();
}

extern "C" TONVALE_EXPORT bool InitDll() noexcept
{
    return Enter();
}

extern "C" TONVALE_EXPORT bool ExitDll() noexcept
{
    return Leave();
}
