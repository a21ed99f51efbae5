#include "persistence/FamilyFolder.h"

#include "foundation/modules/MModule.h"
#include "foundation/modules/SystemPaths.h"
#include "foundation/streams/Files.h"
#include "foundation/threads/MException.h"

MString FindFamilyFolder()
{
    using enum systempaths::Kind;
    try
    {
        // Not made here: a plugin that is only looked at leaves no traces.
        return files::PathJoin(systempaths::Get(UserData), MModule::Get().GetMaker());
    }
    catch (const MException&)
    {
        return {};
    }
}
