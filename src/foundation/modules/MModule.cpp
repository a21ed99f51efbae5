#include "foundation/modules/MModule.h"

#include <string_view>

#include "foundation/modules/ModuleSystem.h"
#include "foundation/modules/SystemPaths.h"
#include "foundation/streams/FileSystem.h"
#include "foundation/streams/Files.h"
#include "foundation/threads/MGuard.h"
#include "foundation/threads/MLockGuard.h"

namespace
{

/// Of "5.03", the number of each place in a byte, the first topmost.
constexpr std::uint32_t PackVersion(std::string_view text)
{
    std::uint32_t packed = 0;
    for (int place = 0; place < 4; ++place)
    {
        std::uint32_t number = 0;
        for (; !text.empty() && text[0] != '.'; text.remove_prefix(1))
            number = 10 * number + static_cast<std::uint32_t>(text[0] - '0');
        text.remove_prefix(text.empty() ? 0 : 1);
        packed = packed << 8U | number;
    }
    return packed;
}
static_assert(PackVersion("5.03") == 0x05030000 && PackVersion("1.2.30.4") == 0x01021E04);

/// Earlier versions kept the data in a folder of one level. It does not replace one that has data.
void MoveFromPreviousPlace(const MString& place)
{
    const MString previous =
        files::PathJoin(systempaths::Get(systempaths::Kind::UserData), "QuillfernTonvale");
    std::error_code ignored;
    if (!is_directory(filesystem::ToPath(previous), ignored))
        return;
    systempaths::GetFamilyFolder();
    files::RenameFile(previous, place);
}

} // namespace

MModule::MModule()
    : path(filesystem::FromPath(modulesystem::GetLibraryPath())),
      version(PackVersion(TONVALE_VERSION))
{
}

MModule& MModule::Get() noexcept
{
    static MModule module;
    return module;
}

MModule::User::~User()
{
    Get().users.fetch_sub(1);
}

MString MModule::GetDataPath() const
{
    const MString userData = systempaths::Get(systempaths::Kind::UserData);
    MString place = files::PathJoin(files::PathJoin(userData, maker), name);
    MGuarded("MModule::GetDataPath copy previous data", false,
             [&]
             {
                 MoveFromPreviousPlace(place);
                 return true;
             });
    MGuarded("MModule::GetDataPath create nextdir", false,
             [&]
             {
                 files::CreatePath(place);
                 return true;
             });
    return place;
}

MString MModule::GetHostName() const
{
    const MLockGuard guard(lock);
    return hostName;
}

void MModule::SetHostName(const MString& newHostName)
{
    const MLockGuard guard(lock);
    hostName = newHostName;
}

std::int32_t OstrelDLLInitialize() noexcept
{
    MModule::Get();
    return 1;
}
