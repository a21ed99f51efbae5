#pragma once

#include "host/vst3/Vst3Base.h"

// How a module tells what it has. Texts are zero ended; with kUnicode the narrow ones are UTF-8.

namespace Vst3
{

struct PFactoryInfo
{
    enum Flags : std::int32_t
    {
        kClassesDiscardable = 1,
        kComponentNonDiscardable = 8,
        kUnicode = 16,
    };

    char vendor[64];
    char url[256];
    char email[128];
    std::int32_t flags;
};
static_assert(offsetof(PFactoryInfo, url) == 64 && offsetof(PFactoryInfo, email) == 320 &&
              offsetof(PFactoryInfo, flags) == 448 && sizeof(PFactoryInfo) == 452);

struct PClassInfo
{
    static constexpr std::int32_t kManyInstances = 0x7FFFFFFF;

    Uid cid;
    std::int32_t cardinality;
    char category[32];
    char name[64];
};
static_assert(offsetof(PClassInfo, cardinality) == 16 && offsetof(PClassInfo, category) == 20 &&
              offsetof(PClassInfo, name) == 52 && sizeof(PClassInfo) == 116);

struct PClassInfo2
{
    Uid cid;
    std::int32_t cardinality;
    char category[32];
    char name[64];
    std::uint32_t classFlags;
    char subCategories[128];
    char vendor[64]; ///< empty: the factory's
    char version[64];
    char sdkVersion[64];
};
static_assert(offsetof(PClassInfo2, name) == 52 && offsetof(PClassInfo2, classFlags) == 116 &&
              offsetof(PClassInfo2, subCategories) == 120 && offsetof(PClassInfo2, vendor) == 248 &&
              offsetof(PClassInfo2, version) == 312 && offsetof(PClassInfo2, sdkVersion) == 376 &&
              sizeof(PClassInfo2) == 440);

struct PClassInfoW
{
    Uid cid;
    std::int32_t cardinality;
    char category[32];
    char16_t name[64];
    std::uint32_t classFlags;
    char subCategories[128];
    char16_t vendor[64];
    char16_t version[64];
    char16_t sdkVersion[64];
};
static_assert(offsetof(PClassInfoW, name) == 52 && offsetof(PClassInfoW, classFlags) == 180 &&
              offsetof(PClassInfoW, subCategories) == 184 && offsetof(PClassInfoW, vendor) == 312 &&
              offsetof(PClassInfoW, version) == 440 && offsetof(PClassInfoW, sdkVersion) == 568 &&
              sizeof(PClassInfoW) == 696);

/// Category of a class that is a processor.
inline constexpr char AudioModuleCategory[] = "Audio Module Class";

class IPluginFactory : public FUnknown
{
public:
    static constexpr Uid Id = MakeUid(0x7A4D811C, 0x52114A1F, 0xAED9D2EE, 0x0B43BF9F);

    virtual Result getFactoryInfo(PFactoryInfo* info) = 0;
    virtual std::int32_t countClasses() = 0;
    virtual Result getClassInfo(std::int32_t index, PClassInfo* info) = 0;
    /// Both ids are sixteen raw bytes. The caller owns one reference of the object.
    virtual Result createInstance(const char* classId, const char* interfaceId, void** object) = 0;

protected:
    ~IPluginFactory() = default;
};

class IPluginFactory2 : public IPluginFactory
{
public:
    static constexpr Uid Id = MakeUid(0x0007B650, 0xF24B4C0B, 0xA464EDB9, 0xF00B2ABB);

    virtual Result getClassInfo2(std::int32_t index, PClassInfo2* info) = 0;

protected:
    ~IPluginFactory2() = default;
};

class IPluginFactory3 : public IPluginFactory2
{
public:
    static constexpr Uid Id = MakeUid(0x4555A2AB, 0xC1234E57, 0x9B122910, 0x36878931);

    virtual Result getClassInfoUnicode(std::int32_t index, PClassInfoW* info) = 0;
    virtual Result setHostContext(FUnknown* context) = 0;

protected:
    ~IPluginFactory3() = default;
};

} // namespace Vst3
