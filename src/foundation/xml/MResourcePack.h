#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "foundation/limits.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/xml/MXMLItem.h"

/// An item tree with an attachment of bytes, as textures and definitions are shipped. The subitems
/// "file" of the root tell by "name", "offset" and "size" what lies where in the attachment.
///
/// On disk, in 32-bit little-endian words: 0, the bytes of the compressed tree, the bytes of the
/// attachment; then the tree and the attachment.
class MResourcePack
{
public:
    MResourcePack();

    MXMLItem& GetTree() noexcept { return tree; }
    std::span<const std::byte> GetAttachment() const noexcept { return attachment.GetData(); }

    /// Appends a file. @throws MException (2) "Resource pack is too long." beyond
    /// limits::AttachmentBytes.
    void AddFile(const MString& name, std::span<const std::byte> bytes);
    /// The bytes of the first file of the name; empty if there is none, or none that lies within
    /// the attachment. Valid until the pack changes.
    std::span<const std::byte> FindFile(const MString& name) const;

    /// Reads a pack and nothing behind it. An attachment of more than @p attachmentLimit bytes is
    /// refused. @throws MException (256) "Could not read required data from stream." and as
    /// MXMLItem::LoadCompressed does; what has been read then stays, to be discarded.
    void Load(MStream& stream, std::int64_t attachmentLimit = limits::AttachmentBytes);
    /// The same for @p pack in memory, which has to outlive this object: only the tree is read, the
    /// attachment stays where it lies.
    void Refer(std::span<const std::byte> pack);
    void Save(MStream& stream) const;

private:
    MXMLItem tree;
    MMemoryStream attachment; ///< at its start
};
