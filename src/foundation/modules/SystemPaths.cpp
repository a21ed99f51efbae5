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

MString systempaths::GetFamilyFolder()
{
    MString folder = files::PathJoin(Get(Kind::UserData), "Quillfern");
    files::CreatePath(folder);
    return folder;
}
