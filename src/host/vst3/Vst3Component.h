#pragma once

#include "host/vst3/Vst3Process.h"

// The processor's half of a plugin. The thread that made the object calls it, but for process.

namespace Vst3
{

enum MediaTypes : std::int32_t
{
    kAudio = 0,
    kEvent = 1,
};
enum BusDirections : std::int32_t
{
    kInput = 0,
    kOutput = 1,
};
enum BusTypes : std::int32_t
{
    kMain = 0,
    kAux = 1,
};

/// A bit for each loudspeaker; channels lie in the order of the bits.
using SpeakerArrangement = std::uint64_t;

namespace SpeakerArr
{
inline constexpr SpeakerArrangement kEmpty = 0;
inline constexpr SpeakerArrangement kStereo = 0x3;
inline constexpr SpeakerArrangement k51 = 0x3F;
inline constexpr SpeakerArrangement k71Cine = 0xFF;
inline constexpr SpeakerArrangement k80Music = 0x737;
inline constexpr SpeakerArrangement kMono = 0x80000; ///< no other speaker stands for it
} // namespace SpeakerArr

struct BusInfo
{
    enum Flags : std::uint32_t
    {
        kDefaultActive = 1,
    };

    std::int32_t mediaType;
    std::int32_t direction;
    std::int32_t channelCount;
    String128 name;
    std::int32_t busType;
    std::uint32_t flags;
};
static_assert(offsetof(BusInfo, name) == 12 && offsetof(BusInfo, busType) == 268 &&
              offsetof(BusInfo, flags) == 272 && sizeof(BusInfo) == 276);

struct RoutingInfo
{
    std::int32_t mediaType;
    std::int32_t busIndex;
    std::int32_t channel;
};
static_assert(sizeof(RoutingInfo) == 12);

class IComponent : public IPluginBase
{
public:
    static constexpr Uid Id = MakeUid(0xE831FF31, 0xF2D54301, 0x928EBBEE, 0x25697802);

    /// @p classId has room for sixteen bytes.
    virtual Result getControllerClassId(std::uint8_t* classId) = 0;
    virtual Result setIoMode(std::int32_t mode) = 0;
    virtual std::int32_t getBusCount(std::int32_t media, std::int32_t direction) = 0;
    /// An index outside leaves @p bus as it is.
    virtual Result getBusInfo(std::int32_t media, std::int32_t direction, std::int32_t index,
                              BusInfo& bus) = 0;
    virtual Result getRoutingInfo(RoutingInfo& input, RoutingInfo& output) = 0;
    virtual Result activateBus(std::int32_t media, std::int32_t direction, std::int32_t index,
                               Bool state) = 0;
    virtual Result setActive(Bool state) = 0;
    /// From the position of the stream to its end.
    virtual Result setState(IBStream* state) = 0;
    virtual Result getState(IBStream* state) = 0;

protected:
    ~IComponent() = default;
};

class IAudioProcessor : public FUnknown
{
public:
    static constexpr Uid Id = MakeUid(0x42043F99, 0xB7DA453C, 0xA569E79D, 0x9AAEC33D);

    /// kResultTrue: taken as it is; else the host reads back what the buses have.
    virtual Result setBusArrangements(SpeakerArrangement* inputs, std::int32_t inputCount,
                                      SpeakerArrangement* outputs, std::int32_t outputCount) = 0;
    virtual Result getBusArrangement(std::int32_t direction, std::int32_t index,
                                     SpeakerArrangement& arrangement) = 0;
    virtual Result canProcessSampleSize(std::int32_t symbolicSampleSize) = 0;
    virtual std::uint32_t getLatencySamples() = 0;
    virtual Result setupProcessing(ProcessSetup& setup) = 0;
    /// Also on the audio thread.
    virtual Result setProcessing(Bool state) = 0;
    virtual Result process(ProcessData& data) = 0;
    virtual std::uint32_t getTailSamples() = 0;

protected:
    ~IAudioProcessor() = default;
};

} // namespace Vst3
