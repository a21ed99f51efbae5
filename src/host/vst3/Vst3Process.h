#pragma once

#include "host/vst3/Vst3Base.h"

// What passes between host and processor with each block. The audio thread, unless a comment says
// otherwise. Layouts are those of 64 bits.

namespace Vst3
{

// Both of ProcessSetup and of ProcessData.
enum ProcessModes : std::int32_t
{
    kRealtime = 0,
    kPrefetch = 1,
    kOffline = 2,
};
enum SymbolicSampleSizes : std::int32_t
{
    kSample32 = 0,
    kSample64 = 1,
};

struct ProcessSetup
{
    std::int32_t processMode;
    std::int32_t symbolicSampleSize;
    std::int32_t maxSamplesPerBlock;
    double sampleRate; ///< Hz
};
static_assert(offsetof(ProcessSetup, maxSamplesPerBlock) == 8 &&
              offsetof(ProcessSetup, sampleRate) == 16 && sizeof(ProcessSetup) == 24);

struct AudioBusBuffers
{
    std::int32_t numChannels;
    std::uint64_t silenceFlags; ///< a bit for each channel that is all zeros
    union                       ///< an array of numChannels blocks, any of which may be null
    {
        float** channelBuffers32;
        double** channelBuffers64;
    };
};
static_assert(offsetof(AudioBusBuffers, silenceFlags) == 8 &&
              offsetof(AudioBusBuffers, channelBuffers32) == 16 && sizeof(AudioBusBuffers) == 24);

/// Where the host stands. Fields but the sample rate and projectTimeSamples count only with their
/// flag; all of them at the start of the block.
struct ProcessContext
{
    enum StatesAndFlags : std::uint32_t
    {
        kPlaying = 0x2,
        kCycleActive = 0x4,
        kRecording = 0x8,
        kSystemTimeValid = 0x100,
        kProjectTimeMusicValid = 0x200,
        kTempoValid = 0x400,
        kBarPositionValid = 0x800,
        kCycleValid = 0x1000,
        kTimeSigValid = 0x2000,
        kSmpteValid = 0x4000,
        kClockValid = 0x8000,
        kContTimeValid = 0x20000,
        kChordValid = 0x40000,
    };

    struct Chord
    {
        std::uint8_t keyNote;
        std::uint8_t rootNote;
        std::int16_t chordMask;
    };

    struct FrameRate
    {
        std::uint32_t framesPerSecond;
        std::uint32_t flags;
    };

    std::uint32_t state;
    double sampleRate;
    std::int64_t projectTimeSamples;
    std::int64_t systemTime; ///< nanoseconds
    std::int64_t continousTimeSamples;
    double projectTimeMusic; ///< quarters
    double barPositionMusic; ///< quarters
    double cycleStartMusic;  ///< quarters
    double cycleEndMusic;    ///< quarters
    double tempo;            ///< quarters a minute
    std::int32_t timeSigNumerator;
    std::int32_t timeSigDenominator;
    Chord chord;
    std::int32_t smpteOffsetSubframes;
    FrameRate frameRate;
    std::int32_t samplesToNextClock;
};
static_assert(offsetof(ProcessContext, sampleRate) == 8 &&
              offsetof(ProcessContext, projectTimeSamples) == 16 &&
              offsetof(ProcessContext, systemTime) == 24 &&
              offsetof(ProcessContext, continousTimeSamples) == 32 &&
              offsetof(ProcessContext, projectTimeMusic) == 40 &&
              offsetof(ProcessContext, barPositionMusic) == 48 &&
              offsetof(ProcessContext, cycleStartMusic) == 56 &&
              offsetof(ProcessContext, cycleEndMusic) == 64 &&
              offsetof(ProcessContext, tempo) == 72 &&
              offsetof(ProcessContext, timeSigNumerator) == 80 &&
              offsetof(ProcessContext, timeSigDenominator) == 84 &&
              offsetof(ProcessContext, chord) == 88 &&
              offsetof(ProcessContext, smpteOffsetSubframes) == 92 &&
              offsetof(ProcessContext, frameRate) == 96 &&
              offsetof(ProcessContext, samplesToNextClock) == 104 && sizeof(ProcessContext) == 112);

struct NoteOnEvent
{
    std::int16_t channel; ///< 0 to 15
    std::int16_t pitch;   ///< 0 to 127
    float tuning;         ///< cents
    float velocity;       ///< 0 to 1
    std::int32_t length;  ///< samples, 0 if unknown
    std::int32_t noteId;  ///< -1 for none
};
static_assert(offsetof(NoteOnEvent, velocity) == 8 && offsetof(NoteOnEvent, noteId) == 16 &&
              sizeof(NoteOnEvent) == 20);

struct NoteOffEvent
{
    std::int16_t channel;
    std::int16_t pitch;
    float velocity;
    std::int32_t noteId;
    float tuning;
};
static_assert(offsetof(NoteOffEvent, velocity) == 4 && offsetof(NoteOffEvent, noteId) == 8 &&
              offsetof(NoteOffEvent, tuning) == 12 && sizeof(NoteOffEvent) == 16);

struct DataEvent
{
    static constexpr std::uint32_t kMidiSysEx = 0;

    std::uint32_t size;
    std::uint32_t type;
    const std::uint8_t* bytes; ///< of the sender, until the block ends
};
static_assert(offsetof(DataEvent, bytes) == 8 && sizeof(DataEvent) == 16);

struct PolyPressureEvent
{
    std::int16_t channel;
    std::int16_t pitch;
    float pressure; ///< 0 to 1
    std::int32_t noteId;
};
static_assert(offsetof(PolyPressureEvent, pressure) == 4 &&
              offsetof(PolyPressureEvent, noteId) == 8 && sizeof(PolyPressureEvent) == 12);

struct NoteExpressionValueEvent
{
    std::uint32_t typeId;
    std::int32_t noteId;
    double value;
};
static_assert(offsetof(NoteExpressionValueEvent, value) == 8 &&
              sizeof(NoteExpressionValueEvent) == 16);

struct NoteExpressionTextEvent
{
    std::uint32_t typeId;
    std::int32_t noteId;
    std::uint32_t textLen;
    const char16_t* text;
};
static_assert(offsetof(NoteExpressionTextEvent, text) == 16 &&
              sizeof(NoteExpressionTextEvent) == 24);

struct ChordEvent
{
    std::int16_t root;
    std::int16_t bassNote;
    std::int16_t mask;
    std::uint16_t textLen;
    const char16_t* text;
};
static_assert(offsetof(ChordEvent, text) == 8 && sizeof(ChordEvent) == 16);

struct ScaleEvent
{
    std::int16_t root;
    std::int16_t mask;
    std::uint16_t textLen;
    const char16_t* text;
};
static_assert(offsetof(ScaleEvent, text) == 8 && sizeof(ScaleEvent) == 16);

/// From the processor to the host alone.
struct LegacyMIDICCOutEvent
{
    enum ControlNumbers : std::uint8_t
    {
        kAfterTouch = 128,
        kPitchBend = 129, ///< value holds the low seven bits, value2 the high ones
        kCtrlProgramChange = 130,
        kCtrlPolyPressure = 131, ///< value holds the key, value2 the pressure
        kCtrlQuarterFrame = 132,
    };

    std::uint8_t controlNumber; ///< up to 127 that of MIDI
    std::int8_t channel;
    std::int8_t value;
    std::int8_t value2;
};
static_assert(sizeof(LegacyMIDICCOutEvent) == 4);

struct Event
{
    enum Flags : std::uint16_t
    {
        kIsLive = 1,
    };
    enum Types : std::uint16_t
    {
        kNoteOnEvent = 0,
        kNoteOffEvent = 1,
        kDataEvent = 2,
        kPolyPressureEvent = 3,
        kNoteExpressionValueEvent = 4,
        kNoteExpressionTextEvent = 5,
        kChordEvent = 6,
        kScaleEvent = 7,
        kLegacyMIDICCOutEvent = 65535,
    };

    std::int32_t busIndex;
    std::int32_t sampleOffset; ///< within the block
    double ppqPosition;        ///< quarters
    std::uint16_t flags;
    std::uint16_t type; ///< which member of the union counts
    union
    {
        NoteOnEvent noteOn;
        NoteOffEvent noteOff;
        DataEvent data;
        PolyPressureEvent polyPressure;
        NoteExpressionValueEvent noteExpressionValue;
        NoteExpressionTextEvent noteExpressionText;
        ChordEvent chord;
        ScaleEvent scale;
        LegacyMIDICCOutEvent midiCCOut;
    };
};
static_assert(offsetof(Event, sampleOffset) == 4 && offsetof(Event, ppqPosition) == 8 &&
              offsetof(Event, flags) == 16 && offsetof(Event, type) == 18 &&
              offsetof(Event, noteOn) == 24 && sizeof(Event) == 48);

class IParamValueQueue : public FUnknown
{
public:
    static constexpr Uid Id = MakeUid(0x01263A18, 0xED074F6F, 0x98C9D356, 0x4686F9BA);

    virtual ParamID getParameterId() = 0;
    virtual std::int32_t getPointCount() = 0;
    /// Points come by rising offset.
    virtual Result getPoint(std::int32_t index, std::int32_t& sampleOffset, double& value) = 0;
    virtual Result addPoint(std::int32_t sampleOffset, double value, std::int32_t& index) = 0;

protected:
    ~IParamValueQueue() = default;
};

class IParameterChanges : public FUnknown
{
public:
    static constexpr Uid Id = MakeUid(0xA4779663, 0x0BB64A56, 0xB44384A8, 0x466FEB9D);

    /// Number of queues.
    virtual std::int32_t getParameterCount() = 0;
    /// Borrowed; may be null.
    virtual IParamValueQueue* getParameterData(std::int32_t index) = 0;
    virtual IParamValueQueue* addParameterData(const ParamID& id, std::int32_t& index) = 0;

protected:
    ~IParameterChanges() = default;
};

class IEventList : public FUnknown
{
public:
    static constexpr Uid Id = MakeUid(0x3A2C4214, 0x346349FE, 0xB2C4F397, 0xB9695A44);

    virtual std::int32_t getEventCount() = 0;
    virtual Result getEvent(std::int32_t index, Event& event) = 0;
    /// Copies @p event.
    virtual Result addEvent(Event& event) = 0;

protected:
    ~IEventList() = default;
};

/// One call of process; any pointer may be null.
struct ProcessData
{
    std::int32_t processMode;
    std::int32_t symbolicSampleSize;
    std::int32_t numSamples; ///< 0 for parameters alone
    std::int32_t numInputs;  ///< buses, which may be fewer than the processor has
    std::int32_t numOutputs;
    AudioBusBuffers* inputs;
    AudioBusBuffers* outputs;
    IParameterChanges* inputParameterChanges;
    IParameterChanges* outputParameterChanges;
    IEventList* inputEvents;
    IEventList* outputEvents;
    ProcessContext* processContext;
};
static_assert(offsetof(ProcessData, numSamples) == 8 && offsetof(ProcessData, numOutputs) == 16 &&
              offsetof(ProcessData, inputs) == 24 && offsetof(ProcessData, outputs) == 32 &&
              offsetof(ProcessData, inputParameterChanges) == 40 &&
              offsetof(ProcessData, outputParameterChanges) == 48 &&
              offsetof(ProcessData, inputEvents) == 56 &&
              offsetof(ProcessData, outputEvents) == 64 &&
              offsetof(ProcessData, processContext) == 72 && sizeof(ProcessData) == 80);

} // namespace Vst3
