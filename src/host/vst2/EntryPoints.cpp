// What hosts find in the module.

#include "foundation/modules/Export.h"
#include "host/vst2/MAudioPluginVSTAdapter.h"

extern "C" TONVALE_EXPORT Vst2::AEffect* VSTPluginMain(Vst2::HostCallback host) noexcept
{
    return Vst2::CreateEffect(host);
}

#ifdef __ELF__
// Older hosts look for this name, which C++ keeps for programs. Elsewhere the list of exports
// gives it to the function above.
extern "C" TONVALE_EXPORT Vst2::AEffect* OldVSTPluginMain(Vst2::HostCallback host) noexcept
    __asm__("main");

Vst2::AEffect* OldVSTPluginMain(Vst2::HostCallback host) noexcept
{
    return VSTPluginMain(host);
}
#endif
