#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// What opcodes of the VST 2.4 interface pass by pointer. Whoever passes a record owns it; it is
/// valid during the call alone.
namespace Vst2
{

/// Where the host stands.
struct VstTimeInfo
{
    enum Flag : std::int32_t
    {
        TransportChanged = 1 << 0,
        TransportPlaying = 1 << 1,
        CycleActive = 1 << 2,
        TransportRecording = 1 << 3,
        AutomationWriting = 1 << 6,
        AutomationReading = 1 << 7,
        NanosValid = 1 << 8, ///< from here on: which fields count
        PpqPosValid = 1 << 9,
        TempoValid = 1 << 10,
        BarsValid = 1 << 11,
        CyclePosValid = 1 << 12,
        TimeSigValid = 1 << 13,
        SmpteValid = 1 << 14,
        ClockValid = 1 << 15,
    };

    double samplePos = 0.0;
    double sampleRate = 0.0; ///< Hz
    double nanoSeconds = 0.0;
    double ppqPos = 0.0; ///< quarters, as are all positions below
    double tempo = 0.0;  ///< quarters a minute
    double barStartPos = 0.0;
    double cycleStartPos = 0.0;
    double cycleEndPos = 0.0;
    std::int32_t timeSigNumerator = 0;
    std::int32_t timeSigDenominator = 0;
    std::int32_t smpteOffset = 0;
    std::int32_t smpteFrameRate = 0;
    std::int32_t samplesToNextClock = 0;
    std::int32_t flags = 0; ///< of Flag
};

/// What all events begin with; byteSize is not to be trusted.
struct VstEvent
{
    enum Type : std::int32_t
    {
        Midi = 1,
        SysEx = 6,
    };

    std::int32_t type = 0;
    std::int32_t byteSize = 32;
    std::int32_t deltaFrames = 0; ///< samples from the start of the coming block
    std::int32_t flags = 0;
    std::array<std::byte, 16> data{};
};

struct VstMidiEvent
{
    std::int32_t type = VstEvent::Midi;
    std::int32_t byteSize = 32;
    std::int32_t deltaFrames = 0;
    std::int32_t flags = 0;
    std::int32_t noteLength = 0;
    std::int32_t noteOffset = 0;
    std::array<std::uint8_t, 4> midiData{}; ///< status, two data bytes, 0
    std::int8_t detune = 0;
    std::uint8_t noteOffVelocity = 0;
    std::array<std::uint8_t, 2> reserved{};
};

struct VstEvents
{
    std::int32_t numEvents = 0;
    std::intptr_t reserved = 0;
    std::array<VstEvent*, 2> events{}; ///< really numEvents of them
};

/// One channel of the host's array.
struct VstPinProperties
{
    enum Flag : std::int32_t
    {
        IsActive = 1,
        IsStereo = 2, ///< first of a pair
        UseSpeaker = 4,
    };

    std::array<char, 64> label{};
    std::int32_t flags = 0; ///< of Flag
    std::int32_t arrangementType = 0;
    std::array<char, 8> shortLabel{};
    std::array<std::byte, 48> future{};
};

struct VstSpeakerProperties
{
    float azimuth = 0.0f;
    float elevation = 0.0f;
    float radius = 0.0f;
    float reserved = 0.0f;
    std::array<char, 64> name{};
    std::int32_t type = 0;
    std::array<std::byte, 28> future{};
};

/// Hosts pass blocks with more or fewer speakers: only numChannels of them may be read.
struct VstSpeakerArrangement
{
    enum Type : std::int32_t
    {
        UserDefined = -2,
        Empty = -1,
        Mono = 0,
        Stereo = 1,
        Music71 = 25, ///< L R C Ls Rs Cs Sl Sr
    };

    std::int32_t type = Empty;
    std::int32_t numChannels = 0;
    std::array<VstSpeakerProperties, 8> speakers{};
};

struct ERect
{
    std::int16_t top = 0;
    std::int16_t left = 0;
    std::int16_t bottom = 0;
    std::int16_t right = 0;
};

// What hosts that were compiled by others count on.
static_assert(sizeof(VstTimeInfo) == 88 && offsetof(VstTimeInfo, ppqPos) == 24 &&
              offsetof(VstTimeInfo, cycleEndPos) == 56 &&
              offsetof(VstTimeInfo, timeSigNumerator) == 64 && offsetof(VstTimeInfo, flags) == 84);
static_assert(sizeof(VstEvent) == 32 && offsetof(VstEvent, deltaFrames) == 8 &&
              offsetof(VstEvent, data) == 16);
static_assert(sizeof(VstMidiEvent) == 32 && offsetof(VstMidiEvent, midiData) == 24 &&
              offsetof(VstMidiEvent, noteOffVelocity) == 29);
static_assert(sizeof(void*) != 8 || (sizeof(VstEvents) == 32 && offsetof(VstEvents, events) == 16));
static_assert(sizeof(VstPinProperties) == 128 && offsetof(VstPinProperties, flags) == 64 &&
              offsetof(VstPinProperties, shortLabel) == 72);
static_assert(sizeof(VstSpeakerProperties) == 112 && offsetof(VstSpeakerProperties, type) == 80);
static_assert(sizeof(VstSpeakerArrangement) == 904 &&
              offsetof(VstSpeakerArrangement, speakers) == 8);
static_assert(sizeof(ERect) == 8 && offsetof(ERect, bottom) == 4);

} // namespace Vst2
