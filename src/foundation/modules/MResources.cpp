#include "foundation/modules/MResources.h"

#include <filesystem>
#include <vector>

#include "foundation/modules/MModule.h"
#include "foundation/streams/FileSystem.h"
#include "foundation/streams/Files.h"
#include "foundation/streams/MStdFileStream.h"
#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"
#include "foundation/threads/MGuard.h"
#include "foundation/xml/MResourcePack.h"

namespace
{

/// Set while other static objects are made, so it must not be one that is made itself.
constinit std::span<const std::byte> innerPackBytes;

class InnerPack
{
public:
    InnerPack()
    {
        if (!innerPackBytes.empty())
            pack.Refer(innerPackBytes);
    }
    std::span<const std::byte> Find(const MString& name) const { return pack.FindFile(name); }

private:
    MResourcePack pack;
};

/// Whether @p name has nothing but plain parts between single slashes: none is empty, "." or "..",
/// and none has what separates parts or names drives anywhere.
bool IsPlain(const MString& name) noexcept
{
    int start = 0;
    for (int i = 0; i <= name.Length(); ++i)
    {
        const char16_t character = name.CharAt(i);
        if (i < name.Length() && (character < u' ' || character == u'\\' || character == u':'))
            return false;
        if (i < name.Length() && character != u'/')
            continue;
        const bool isDots = name.CharAt(start) == u'.' &&
                            (i - start == 1 || (i - start == 2 && name.CharAt(start + 1) == u'.'));
        if (i == start || isDots)
            return false;
        start = i + 1;
    }
    return true;
}

/// Empty if there is no place for data, as in a sandbox without a home.
MString GetUserFolder()
{
    return MGuarded("MResources::Open", MString(),
                    [] { return files::PathJoin(MModule::Get().GetDataPath(), "resources"); });
}

/// A bundle has a folder of its own for them, any other library has them beside it.
MString GetInstalledFolder()
{
    const std::filesystem::path folder = filesystem::ToPath(MModule::Get().GetPath()).parent_path();
    const bool isBundle = folder.parent_path().filename() == "Contents";
    return filesystem::FromPath(isBundle ? folder.parent_path() / "Resources"
                                         : folder / "resources");
}

bool IsFile(const MString& name)
{
    std::error_code ignored; // no pipe either, whose reader would wait
    return is_regular_file(filesystem::ToPath(name), ignored);
}

MMemoryStream ReadWhole(const MString& fileName)
{
    MStdFileStream file(fileName, MStdFileStream::Opening::Existing);
    MMemoryStream bytes;
    CopyTo(file, bytes);
    bytes.Seek(0, MStream::FromStart);
    return bytes;
}

} // namespace

MMemoryStream MResources::Open(const MString& name)
{
    if (IsPlain(name))
    {
        for (const MString& folder : {GetUserFolder(), GetInstalledFolder()})
            if (const MString file = files::PathJoin(folder, name);
                !folder.IsEmpty() && IsFile(file))
                return ReadWhole(file);
        static const InnerPack inner;
        if (const std::span<const std::byte> bytes = inner.Find(name); !bytes.empty())
            return MMemoryStream::Refer(bytes);
    }
    throw MException(MStringFormatter("Could not find resource \"{0}\".").Add(name).Result());
}

void MResources::SetInnerPack(std::span<const std::byte> pack) noexcept
{
    innerPackBytes = pack;
}
