// Looks up a folder in a stranger's file of user folders: the answer is an absolute path that a
// system call takes whole, or nothing.

#include <cstdint>
#include <cstdlib>

#include "foundation/modules/UserFolders.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::string folder = FindUserFolder(text, "DESKTOP", "/home/user");
    if (!folder.empty() && (folder[0] != '/' || folder.find('\0') != std::string::npos))
        std::abort();
    return 0;
}
