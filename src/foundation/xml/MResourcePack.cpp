#include "foundation/xml/MResourcePack.h"

#include <algorithm>
#include <array>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MXMLItemIterator.h"

namespace
{

constexpr std::size_t WordBytes = 4;

std::uint32_t ReadWord(MStream& stream)
{
    std::array<std::byte, WordBytes> bytes;
    ReadExactly(stream, bytes);
    std::uint32_t word = 0;
    for (std::size_t i = WordBytes; i-- > 0;)
        word = word << 8U | std::to_integer<std::uint32_t>(bytes[i]);
    return word;
}

void WriteWord(MStream& stream, std::size_t word)
{
    std::array<std::byte, WordBytes> bytes;
    for (std::size_t i = 0; i < WordBytes; ++i)
        bytes[i] = static_cast<std::byte>(word >> (8 * i) & 0xFFU);
    stream.Write(bytes);
}

/// In pieces, so that no more memory is taken than the source has bytes, give or take one piece.
std::vector<std::byte> ReadBytes(MStream& stream, std::size_t count)
{
    constexpr std::size_t PieceBytes = 1 << 16;
    std::vector<std::byte> bytes;
    while (bytes.size() < count)
    {
        const std::size_t start = bytes.size();
        bytes.resize(start + std::min(PieceBytes, count - start));
        ReadExactly(stream, std::span(bytes).subspan(start));
    }
    return bytes;
}

/// -1 for what is no number of bytes.
std::int64_t ByteCount(const MXMLItem& item, const MString& attribute)
{
    return std::max<std::int64_t>(item.GetAttribute(attribute, "-1").ToInteger(), -1);
}

} // namespace

MResourcePack::MResourcePack() : tree("resources") {}

void MResourcePack::AddFile(const MString& name, std::span<const std::byte> bytes)
{
    if (bytes.size() > static_cast<std::size_t>(limits::AttachmentBytes) - attachment.size())
        throw MException("Resource pack is too long.", MException::BadArgument);
    MXMLItem& file = tree.AddSubItem("file");
    file.SetAttribute("name", name);
    file.SetAttribute("offset", static_cast<int>(attachment.size()));
    file.SetAttribute("size", static_cast<int>(bytes.size()));
    attachment.insert(attachment.end(), bytes.begin(), bytes.end());
}

std::span<const std::byte> MResourcePack::FindFile(const MString& name) const
{
    MXMLItemIterator file(tree, "file");
    for (file.Begin(); file.IsValid(); file.Next())
    {
        if (file.Current().GetAttribute("name", "") != name)
            continue;
        const std::int64_t offset = ByteCount(file.Current(), "offset");
        const std::int64_t size = ByteCount(file.Current(), "size");
        const auto available = static_cast<std::int64_t>(attachment.size());
        if (offset < 0 || size < 0 || offset > available || size > available - offset)
            return {};
        return GetAttachment().subspan(static_cast<std::size_t>(offset),
                                       static_cast<std::size_t>(size));
    }
    return {};
}

void MResourcePack::Load(MStream& stream, std::int64_t attachmentLimit)
{
    ReadWord(stream);
    const std::uint32_t treeBytes = ReadWord(stream);
    const std::uint32_t attachmentBytes = ReadWord(stream);
    if (attachmentBytes > attachmentLimit)
        throw MException("Could not read required data from stream.", MException::BadData);

    const std::vector<std::byte> packedTree = ReadBytes(stream, treeBytes);
    std::vector<std::byte> newAttachment = ReadBytes(stream, attachmentBytes);
    MMemoryStream treeStream = MMemoryStream::Refer(packedTree);
    tree.LoadCompressed(treeStream);
    attachment = std::move(newAttachment);
}

void MResourcePack::Save(MStream& stream) const
{
    MMemoryStream packedTree;
    tree.SaveCompressed(packedTree, "utf-8");
    packedTree.Seek(0, MStream::FromStart);

    WriteWord(stream, 0);
    WriteWord(stream, packedTree.GetData().size());
    WriteWord(stream, attachment.size());
    stream.Write(packedTree.GetData());
    stream.Write(attachment);
}
