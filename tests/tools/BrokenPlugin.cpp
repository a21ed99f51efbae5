// A library that is no proper plugin; which fault it has the build says.

#include "host/vst2/Vst2Interface.h"

extern "C"
{

#if TONVALE_FAULT <= 2
    __attribute__((visibility("default"))) Vst2::AEffect* VSTPluginMain(Vst2::HostCallback /*host*/)
    {
        static Vst2::AEffect effect{.magic = 0};
        return TONVALE_FAULT == 1 ? nullptr : &effect;
    }
#endif

#if TONVALE_FAULT >= 3 && TONVALE_FAULT <= 5
    __attribute__((visibility("default"))) void* GetPluginFactory()
    {
        return nullptr;
    }
#endif

#if TONVALE_FAULT == 4 || TONVALE_FAULT == 5
    __attribute__((visibility("default"))) bool ModuleEntry(void* /*library*/)
    {
        return TONVALE_FAULT != 4;
    }

    __attribute__((visibility("default"))) bool ModuleExit()
    {
        return true;
    }
#endif

} // extern "C"
