// Reads strangers' resource packs. A file that one claims to have lies within its attachment, a
// pack that was read can be written and read again, and reading in place gives the same.

#include <algorithm>
#include <cstdlib>
#include <span>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MResourcePack.h"
#include "foundation/xml/MXMLItemIterator.h"

namespace
{

constexpr std::int64_t AttachmentLimit = 1 << 16; ///< bytes

std::size_t TouchFiles(MResourcePack& pack)
{
    std::size_t touched = 0;
    MXMLItemIterator file(pack.GetTree(), "file");
    for (file.Begin(); file.IsValid(); file.Next())
        for (const std::byte byte : pack.FindFile(file.Current().GetAttribute("name", "")))
            touched += byte == std::byte{0} ? 0 : 1;
    return touched;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    MResourcePack pack;
    const std::span<const std::byte> bytes = std::as_bytes(std::span(data, size));
    try
    {
        MMemoryStream stream = MMemoryStream::Refer(bytes);
        pack.Load(stream, AttachmentLimit);
    }
    catch (const MException&) // refused, as it may be
    {
        return 0;
    }
    const std::size_t touched = TouchFiles(pack);
    MResourcePack inPlace;
    inPlace.Refer(bytes);
    if (!std::ranges::equal(inPlace.GetAttachment(), pack.GetAttachment()) ||
        TouchFiles(inPlace) != touched)
        std::abort();
    MMemoryStream written;
    pack.Save(written);
    written.Seek(0, MStream::FromStart);
    MResourcePack again;
    again.Load(written, AttachmentLimit);
    if (again.GetAttachment().size() != pack.GetAttachment().size() ||
        (touched > 0 && TouchFiles(again) == 0))
        std::abort();
    return 0;
}
