#include <dlfcn.h>

#include "foundation/modules/MLibrary.h"
#include "foundation/threads/MException.h"

MLibrary::MLibrary(const MString& path)
    : handle(dlopen(path.ToUTF8().c_str(), RTLD_NOW | RTLD_LOCAL))
{
    if (handle == nullptr)
    {
        const char* const reason = dlerror(); // NOLINT(concurrency-mt-unsafe): of this thread
        throw MException(MString::FromUTF8(reason != nullptr ? reason : path.ToUTF8()));
    }
}

MLibrary::~MLibrary()
{
    dlclose(handle);
}

void* MLibrary::FindSymbol(const char* symbol) const noexcept
{
    return dlsym(handle, symbol);
}
