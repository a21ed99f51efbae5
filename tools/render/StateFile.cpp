#include "tools/render/StateFile.h"

#include <cerrno>
#include <fstream>
#include <span>

#include "foundation/limits.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/xml/MXMLItem.h"
#include "foundation/xml/SettingsTree.h"
#include "tools/render/Failure.h"
#include "tools/render/PartFile.h"
#include "tools/render/ReadFile.h"

namespace
{

/// Whether it begins with the two bytes in front of deflated data. No XML does, in any encoding.
bool IsCompressed(std::span<const std::uint8_t> bytes)
{
    return bytes.size() >= 2 && bytes[0] % 16 == 8 && (bytes[0] * 256 + bytes[1]) % 31 == 0;
}

void Read(const std::filesystem::path& path, MXMLItem& root)
{
    constexpr auto MaxBytes = static_cast<std::size_t>(limits::InflatedTreeBytes);
    const std::vector<std::uint8_t> bytes = ReadFile(path, MaxBytes);
    if (bytes.size() > MaxBytes)
        throw Failure("it is larger than 128 MiB");
    MMemoryStream stream = MMemoryStream::Refer(std::as_bytes(std::span(bytes)));
    if (IsCompressed(bytes))
        root.LoadCompressed(stream);
    else
        root.Load(stream);
    if (root.GetName() != "settings")
        throw Failure("its root is \"" + root.GetName().ToUTF8() + "\", not \"settings\"");
    CheckSettingsTree(root);
}

} // namespace

void statefile::Load(const std::filesystem::path& path, MXMLItem& root)
{
    try
    {
        Read(path, root);
    }
    catch (const MException& failure)
    {
        throw Failure("cannot load " + Quoted(path), failure.text.ToUTF8());
    }
}

void statefile::Save(const std::filesystem::path& path, const MXMLItem& root)
{
    PartFile part(path);
    MMemoryStream text;
    root.Save(text, false, "utf-8");
    text.Seek(0, MStream::FromStart);
    const std::span<const std::byte> bytes = text.GetData();

    errno = 0;
    std::ofstream file(part.GetPath(), std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file)
        part.Fail(errno != 0 ? SystemReason(errno) : "it cannot be finished");
    part.Commit();
}
