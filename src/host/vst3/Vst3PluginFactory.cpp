#include "host/vst3/Vst3PluginFactory.h"

#include <algorithm>
#include <memory>
#include <string_view>

#include "foundation/modules/MModule.h"
#include "foundation/threads/MGuard.h"
#include "host/MAudioPlugin.h"
#include "host/vst3/MAudioPluginVST3Adapter.h"

namespace Vst3
{

namespace
{

/// The maker's four letters and the product's, each reversed, and the product's twice as they are.
/// These bytes on every system, as sessions keep them.
constexpr Uid ClassId = {'l', 'i', 'u', 'Q', 'n', 'r', 'e', 'f',
                         'T', 'n', 'v', '+', 'T', 'n', 'v', '+'};

constexpr std::string_view Vendor = "Quillfern";
constexpr std::string_view Url = "https://quillfern.example";
constexpr std::string_view Email = "mailto:info@quillfern.example";
constexpr std::string_view ClassName = "Tonvale";
constexpr std::string_view SubCategories = "Fx|Tools";
constexpr std::string_view Version = "5.03";
constexpr std::string_view SdkVersion = "VST 3.0.2";

/// @p text is ASCII and shorter than @p target, which is zeroed.
template <typename Character, std::size_t Size>
void Write(Character (&target)[Size], std::string_view text) noexcept
{
    std::ranges::copy(text.substr(0, Size - 1), target);
}

/// What all forms of the class record begin with.
template <typename Record>
void WriteClass(Record& info) noexcept
{
    info = {};
    info.cid = ClassId;
    info.cardinality = PClassInfo::kManyInstances;
    Write(info.category, AudioModuleCategory);
    Write(info.name, ClassName);
}

/// And what the later ones add. The vendor stays empty: it is the factory's.
template <typename Record>
void WriteWholeClass(Record& info) noexcept
{
    WriteClass(info);
    Write(info.subCategories, SubCategories);
    Write(info.version, Version);
    Write(info.sdkVersion, SdkVersion);
}

bool IsClass(std::int32_t index, const void* info) noexcept
{
    return index == 0 && info != nullptr;
}

} // namespace

PluginFactory& PluginFactory::Get() noexcept
{
    static constinit PluginFactory factory;
    return factory;
}

Result PluginFactory::queryInterface(const std::uint8_t* id, void** object)
{
    if (object == nullptr)
        return kInvalidArgument;
    *object = nullptr;
    if (id == nullptr)
        return kInvalidArgument;
    if (!IsUid(id, FUnknown::Id) && !IsUid(id, IPluginFactory::Id) &&
        !IsUid(id, IPluginFactory2::Id) && !IsUid(id, IPluginFactory3::Id))
        return kNoInterface;
    *object = static_cast<IPluginFactory3*>(this);
    addRef();
    return kResultOk;
}

std::uint32_t PluginFactory::addRef()
{
    return references.fetch_add(1, std::memory_order_relaxed) + 1;
}

std::uint32_t PluginFactory::release()
{
    return references.fetch_sub(1, std::memory_order_relaxed) - 1;
}

Result PluginFactory::getFactoryInfo(PFactoryInfo* info)
{
    if (info == nullptr)
        return kInvalidArgument;
    *info = {};
    Write(info->vendor, Vendor);
    Write(info->url, Url);
    Write(info->email, Email);
    info->flags = PFactoryInfo::kUnicode;
    return kResultOk;
}

std::int32_t PluginFactory::countClasses()
{
    return 1;
}

Result PluginFactory::getClassInfo(std::int32_t index, PClassInfo* info)
{
    if (!IsClass(index, info))
        return kInvalidArgument;
    WriteClass(*info);
    return kResultOk;
}

Result PluginFactory::getClassInfo2(std::int32_t index, PClassInfo2* info)
{
    if (!IsClass(index, info))
        return kInvalidArgument;
    WriteWholeClass(*info);
    return kResultOk;
}

Result PluginFactory::getClassInfoUnicode(std::int32_t index, PClassInfoW* info)
{
    if (!IsClass(index, info))
        return kInvalidArgument;
    WriteWholeClass(*info);
    return kResultOk;
}

Result PluginFactory::setHostContext(FUnknown* /*context*/)
{
    return kResultOk;
}

Result PluginFactory::createInstance(const char* classId, const char* interfaceId, void** object)
{
    if (object == nullptr)
        return kInvalidArgument;
    *object = nullptr;
    if (classId == nullptr || interfaceId == nullptr)
        return kInvalidArgument;
    if (!IsUid(reinterpret_cast<const std::uint8_t*>(classId), ClassId))
        return kInvalidArgument;
    return MGuarded("VST3 Plugin main", kResultFalse,
                    [&]
                    {
                        OstrelDLLInitialize();
                        std::unique_ptr<MAudioPlugin> plugin = CreateAudioPlugin();
                        if (plugin == nullptr)
                            return kResultFalse;
                        auto* const adapter = new MAudioPluginVST3Adapter(std::move(plugin));
                        const Result result = adapter->queryInterface(
                            reinterpret_cast<const std::uint8_t*>(interfaceId), object);
                        adapter->release();
                        return result;
                    });
}

} // namespace Vst3
