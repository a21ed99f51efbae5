#include "foundation/modules/MModule.h"

#include "foundation/threads/MLockGuard.h"

MModule::MModule() = default;

MModule& MModule::Get() noexcept
{
    static MModule module;
    return module;
}

MModule::User::~User()
{
    Get().users.fetch_sub(1);
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
