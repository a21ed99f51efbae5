#include "foundation/modules/SystemPaths.h"

#include <filesystem>
#include <system_error>

#include "foundation/modules/ModuleSystem.h"
#include "foundation/streams/FileSystem.h"
#include "foundation/streams/Files.h"
#include "foundation/threads/MException.h"

MString systempaths::Get(Kind kind)
{
    if (kind == Kind::UserData)
        if (const auto folder = modulesystem::GetFolderVariable("QUILLFERN_DATA"); !folder.empty())
            return filesystem::FromPath(folder);
    try
    {
        return filesystem::FromPath(modulesystem::FindFolder(kind));
    }
    catch (const std::system_error& failure)
    {
        if (kind == Kind::Documents)
            return Get(Kind::UserDocuments);
        if (kind == Kind::Temp)
            return files::PathJoin(Get(Kind::System), "temp");
        MString text = "Could not retrieve system path. ";
        text.Append(MString::FromUTF8(failure.code().message()));
        throw MException(text);
    }
}

std::vector<MString> systempaths::GetFontFolders()
{
    std::vector<MString> folders;
    const std::vector<std::filesystem::path> paths = modulesystem::GetFontFolders();
    folders.reserve(paths.size());
    for (const std::filesystem::path& folder : paths)
        folders.push_back(filesystem::FromPath(folder));
    return folders;
}

MString systempaths::GetFamilyFolder()
{
    MString folder = files::PathJoin(Get(Kind::UserData), "Quillfern");
    files::CreatePath(folder);
    return folder;
}
