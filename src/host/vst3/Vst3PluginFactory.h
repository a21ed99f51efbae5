#pragma once

#include <atomic>

#include "host/vst3/Vst3Factory.h"

namespace Vst3
{

/// The one class of this module. The factory itself is no allocated object and never ends, so it
/// may be asked at any time and leaves nothing behind; its references are only counted.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor): hosts call none of interfaces
class PluginFactory final : public IPluginFactory3
{
public:
    static PluginFactory& Get() noexcept;

    Result queryInterface(const std::uint8_t* id, void** object) override;
    std::uint32_t addRef() override;
    std::uint32_t release() override;

    Result getFactoryInfo(PFactoryInfo* info) override;
    std::int32_t countClasses() override;
    Result getClassInfo(std::int32_t index, PClassInfo* info) override;
    Result createInstance(const char* classId, const char* interfaceId, void** object) override;
    Result getClassInfo2(std::int32_t index, PClassInfo2* info) override;
    Result getClassInfoUnicode(std::int32_t index, PClassInfoW* info) override;
    Result setHostContext(FUnknown* context) override;

private:
    constexpr PluginFactory() = default;

    std::atomic<std::uint32_t> references = 0;
};

} // namespace Vst3
