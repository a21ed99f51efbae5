#include "foundation/xml/MResourcePack.h"

#include <algorithm>
#include <array>
#include <vector>

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
MMemoryStream ReadBytes(MStream& stream, std::size_t count)
{
    constexpr std::size_t PieceBytes = 1 << 16;
    std::vector<std::byte> buffer(std::min(PieceBytes, count));
    MMemoryStream bytes;
    while (count > 0)
    {
        const std::span piece = std::span(buffer).first(std::min(buffer.size(), count));
        ReadExactly(stream, piece);
        bytes.Write(piece);
        count -= piece.size();
    }
    bytes.Seek(0, MStream::FromStart);
    return bytes;
}

[[noreturn]] void FailAtEnd()
{
    throw MException("Could not read required data from stream.", MException::BadData);
}

/// What stands before the tree.
struct Header
{
    std::uint32_t treeBytes;
    std::uint32_t attachmentBytes;
};

Header ReadHeader(MStream& stream)
{
    ReadWord(stream);
    const std::uint32_t treeBytes = ReadWord(stream);
    return {treeBytes, ReadWord(stream)};
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
    if (bytes.size() > static_cast<std::size_t>(limits::AttachmentBytes) - GetAttachment().size())
        throw MException("Resource pack is too long.", MException::BadArgument);
    MXMLItem& file = tree.AddSubItem("file");
    file.SetAttribute("name", name);
    file.SetAttribute("offset", static_cast<int>(GetAttachment().size()));
    file.SetAttribute("size", static_cast<int>(bytes.size()));
    attachment.Seek(0, MStream::FromEnd);
    attachment.Write(bytes);
    attachment.Seek(0, MStream::FromStart);
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
        const auto available = static_cast<std::int64_t>(GetAttachment().size());
        if (offset < 0 || size < 0 || offset > available || size > available - offset)
            return {};
        return GetAttachment().subspan(static_cast<std::size_t>(offset),
                                       static_cast<std::size_t>(size));
    }
    return {};
}

void MResourcePack::Load(MStream& stream, std::int64_t attachmentLimit)
{
    const Header header = ReadHeader(stream);
    if (header.attachmentBytes > attachmentLimit)
        FailAtEnd();

    MMemoryStream packedTree = ReadBytes(stream, header.treeBytes);
    MMemoryStream newAttachment = ReadBytes(stream, header.attachmentBytes);
    tree.LoadCompressed(packedTree);
    attachment = std::move(newAttachment);
}

void MResourcePack::Refer(std::span<const std::byte> pack)
{
    MMemoryStream stream = MMemoryStream::Refer(pack);
    const Header header = ReadHeader(stream);
    const std::span<const std::byte> rest = stream.GetData();
    if (rest.size() < std::uint64_t{header.treeBytes} + header.attachmentBytes)
        FailAtEnd();

    MMemoryStream packedTree = MMemoryStream::Refer(rest.first(header.treeBytes));
    tree.LoadCompressed(packedTree);
    attachment = MMemoryStream::Refer(rest.subspan(header.treeBytes, header.attachmentBytes));
}

void MResourcePack::Save(MStream& stream) const
{
    MMemoryStream packedTree;
    tree.SaveCompressed(packedTree, "utf-8");
    packedTree.Seek(0, MStream::FromStart);

    WriteWord(stream, 0);
    WriteWord(stream, packedTree.GetData().size());
    WriteWord(stream, GetAttachment().size());
    stream.Write(packedTree.GetData());
    stream.Write(GetAttachment());
}
