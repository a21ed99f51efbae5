// A library to be loaded from any folder, which tells what it finds from there.

#include "foundation/modules/MModule.h"
#include "foundation/modules/MResources.h"

/// Writes the file of this library, a blank and the text of the resource @p name, with a
/// terminator.
extern "C" [[gnu::visibility("default")]] void TellResource(const char* name, char* text)
{
    for (const char character : MModule::Get().GetPath().ToUTF8() + " ")
        *text++ = character;
    const MMemoryStream stream = MResources::Open(name);
    for (const std::byte byte : stream.GetData())
        *text++ = static_cast<char>(byte);
    *text = '\0';
}
