#include <windows.h>

#include <filesystem>
#include <system_error>

#include "foundation/modules/MLibrary.h"
#include "foundation/threads/MException.h"

MLibrary::MLibrary(const MString& path)
    : handle(LoadLibraryW(std::filesystem::u8path(path.ToUTF8()).c_str()))
{
    if (handle == nullptr)
        throw MException(
            MString::FromUTF8(std::system_category().message(static_cast<int>(GetLastError()))));
}

MLibrary::~MLibrary()
{
    FreeLibrary(static_cast<HMODULE>(handle));
}

void* MLibrary::FindSymbol(const char* symbol) const noexcept
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle), symbol));
}
