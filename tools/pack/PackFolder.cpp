#include "tools/pack/PackFolder.h"

#include "foundation/streams/Files.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/streams/MStdFileStream.h"
#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MResourcePack.h"

namespace
{

void PackFile(MResourcePack& pack, const MString& file, const MString& name)
{
    MStdFileStream stream(file, MStdFileStream::Opening::Existing);
    MMemoryStream bytes;
    CopyTo(stream, bytes);
    bytes.Seek(0, MStream::FromStart);
    if (bytes.GetData().empty())
        throw MException(MStringFormatter("\"{0}\" is empty.").Add(file).Result());
    pack.AddFile(name, bytes.GetData());
}

/// @p start is what the names begin with.
void PackBelow(MResourcePack& pack, const MString& folder, const MString& start)
{
    for (const files::Entry& entry : files::ListDirectory(folder))
    {
        if (entry.name.CharAt(0) == u'.')
            continue;
        const MString path = files::PathJoin(folder, entry.name);
        MString name = start;
        name.Append(entry.name);
        if (!entry.isFolder)
        {
            PackFile(pack, path, name);
            continue;
        }
        name.Append(u'/');
        PackBelow(pack, path, name);
    }
}

} // namespace

void PackFolder(MResourcePack& pack, const MString& folder)
{
    PackBelow(pack, folder, "");
}
