#pragma once

#include <array>
#include <cstdint>
#include <limits>

class MMIDIProcessorBase;
struct MPluginParameterRecord;
struct MPluginSpecialRecord;

/// What a plugin tells of itself. It lives in the plugin, as does all that it points to, and is
/// complete when the plugin's constructor returns.
struct MPluginInfo
{
    /// It writes its outputs before it reads its inputs, so the two may not share a block.
    static constexpr std::uint32_t NotInPlace = 1u << 2;
    static constexpr std::uint32_t IndirectParameters = 1u << 7; ///< use parameterPointers
    static constexpr std::uint32_t DefaultFlags = 1u << 1 | 1u << 5;

    MPluginInfo() noexcept { channelValues = channelGains.data(); }
    MPluginInfo(const MPluginInfo&) = delete; // channelValues points inside
    MPluginInfo& operator=(const MPluginInfo&) = delete;

    std::uint32_t flags = DefaultFlags;
    MPluginParameterRecord* parameters = nullptr;
    std::int32_t parameterCount = 0;
    MPluginSpecialRecord* specials = nullptr;
    std::int32_t specialCount = 0;
    MPluginParameterRecord** parameterPointers = nullptr;
    std::int32_t parameterPointerCount = 0;
    std::int32_t inputBusCount = 1; ///< 2 announces a sidechain bus
    std::int32_t outputBusCount = 1;
    std::int32_t thirdCount = 1;
    MMIDIProcessorBase* midiProcessor = nullptr; ///< listens to all channels; null for none
    double* channelValues = nullptr;             ///< channelGains
    std::int32_t maxProcessingBlock = std::numeric_limits<std::int32_t>::max(); ///< samples
    std::int32_t reserved = -1;
    std::array<double, 8> channelGains{1.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0};

    /// The parameter list in either form.
    std::int32_t CountParameters() const noexcept;
    /// Null for an @p index outside the list.
    MPluginParameterRecord* FindParameter(std::intptr_t index) const noexcept;
};
