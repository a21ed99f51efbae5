#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The VST 2.4 interface as it lies in memory: what a host and an effect agree on. The records keep
/// the names by which hosts' diagnostics call them; all of them have the platform's own alignment.
namespace Vst2
{

struct AEffect;

/// What an effect calls of its host: index, value, pointer and number mean what the opcode says.
using HostCallback = std::intptr_t (*)(AEffect* effect, std::int32_t opcode, std::int32_t index,
                                       std::intptr_t value, void* ptr, float opt);
using Dispatcher = HostCallback;
using ProcessFunction = void (*)(AEffect* effect, float** inputs, float** outputs,
                                 std::int32_t samples);
using ProcessDoubleFunction = void (*)(AEffect* effect, double** inputs, double** outputs,
                                       std::int32_t samples);
using SetParameterFunction = void (*)(AEffect* effect, std::int32_t index, float value);
using GetParameterFunction = float (*)(AEffect* effect, std::int32_t index);
/// VSTPluginMain, or main in older modules.
using EntryFunction = AEffect* (*)(HostCallback host);

/// Four characters, the first of them topmost.
constexpr std::int32_t MakeCode(const char (&text)[5]) noexcept
{
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(text[i]);
    return static_cast<std::int32_t>(code);
}

constexpr std::int32_t EffectMagic = MakeCode("VstP");
constexpr std::int32_t IdentifyCode = MakeCode("NvEf"); ///< answer to EffectOpcode::Identify
constexpr std::int32_t InterfaceVersion = 2400;

/// One effect, as its entry function hands it out; it stays where it is until the effect is closed.
struct AEffect
{
    enum Flag : std::int32_t
    {
        HasEditor = 1 << 0,
        CanReplacing = 1 << 4,
        ProgramChunks = 1 << 5, ///< the state is a chunk
        IsSynth = 1 << 8,
        NoSoundInStop = 1 << 9, ///< silence in gives silence out
        CanDoubleReplacing = 1 << 12,
    };

    std::int32_t magic = EffectMagic;
    Dispatcher dispatcher = nullptr;
    ProcessFunction process = nullptr; ///< adds to the outputs; deprecated, but never null
    SetParameterFunction setParameter = nullptr;
    GetParameterFunction getParameter = nullptr;
    std::int32_t numPrograms = 0;
    std::int32_t numParams = 0;
    std::int32_t numInputs = 0;
    std::int32_t numOutputs = 0;
    std::int32_t flags = 0; ///< of Flag
    std::array<void*, 2> reservedForHost{};
    std::int32_t initialDelay = 0; ///< latency in samples
    std::int32_t realQualities = 0;
    std::int32_t offQualities = 0;
    float ioRatio = 1.0f;
    void* object = nullptr; ///< the effect's own
    void* user = nullptr;
    std::int32_t uniqueID = 0;
    std::int32_t version = 1;
    ProcessFunction processReplacing = nullptr;
    ProcessDoubleFunction processDoubleReplacing = nullptr;
    std::array<std::byte, 56> future{};
};

/// What a host asks of an effect; 0 is the neutral answer to each.
enum class EffectOpcode : std::int32_t
{
    Open = 0,
    Close = 1,
    SetProgram = 2, ///< value: program
    GetProgram = 3,
    SetProgramName = 4,  ///< ptr: text
    GetProgramName = 5,  ///< ptr: receives text
    GetParamLabel = 6,   ///< index: parameter; ptr: receives text
    GetParamDisplay = 7, ///< likewise
    GetParamName = 8,    ///< likewise
    SetSampleRate = 10,  ///< opt: Hz
    SetBlockSize = 11,   ///< value: samples
    MainsChanged = 12,   ///< value: 0 suspends, 1 resumes
    EditGetRect = 13,    ///< ptr: receives ERect*
    EditOpen = 14,       ///< ptr: parent window
    EditClose = 15,
    EditIdle = 19,
    Identify = 22,              ///< answers IdentifyCode
    GetChunk = 23,              ///< index: 1 for the program; ptr: receives void*; answers bytes
    SetChunk = 24,              ///< index: likewise; value: bytes; ptr: data
    ProcessEvents = 25,         ///< ptr: VstEvents
    CanBeAutomated = 26,        ///< index: parameter
    String2Parameter = 27,      ///< index: parameter; ptr: text, null asks whether it works
    GetProgramNameIndexed = 29, ///< index: program; ptr: receives text
    ConnectInput = 31,          ///< index: pin; value: 0 or 1
    ConnectOutput = 32,
    GetInputProperties = 33, ///< index: pin; ptr: VstPinProperties
    GetOutputProperties = 34,
    GetPlugCategory = 35,           ///< answers PlugCategory
    SetSpeakerArrangement = 42,     ///< value, ptr: VstSpeakerArrangement* of inputs, outputs
    SetBlockSizeAndSampleRate = 43, ///< value: samples; opt: Hz
    SetBypass = 44,                 ///< value: 0 or 1
    GetEffectName = 45,             ///< ptr: receives text
    GetVendorString = 47,
    GetProductString = 48,
    GetVendorVersion = 49,
    VendorSpecific = 50,
    CanDo = 51,                  ///< ptr: text; answers 1 yes, 0 unknown, -1 no
    GetTailSize = 52,            ///< answers samples, 0 for unknown
    GetParameterProperties = 56, ///< index: parameter; ptr: VstParameterProperties
    KeysRequired = 57,           ///< answers 0 if keys are wanted
    GetVstVersion = 58,          ///< answers InterfaceVersion
    EditKeyDown = 59,            ///< index: character; value: virtual key; opt: modifiers
    EditKeyUp = 60,
    GetSpeakerArrangement = 69, ///< value, ptr: receive VstSpeakerArrangement*
    StartProcess = 71,
    StopProcess = 72,
    SetTotalSampleToProcess = 73, ///< value: samples, and the answer
    SetProcessPrecision = 77,     ///< value: 0 for 32 bits, 1 for 64
};

/// What an effect asks of its host; 0 is the neutral answer to each.
enum class HostOpcode : std::int32_t
{
    Automate = 0,  ///< index: parameter; opt: value
    Version = 1,   ///< answers 2400 and the like; 0 or 1 for the first version
    CurrentId = 2, ///< answers the id of the member of a shell that is loaded
    Idle = 3,
    WantMidi = 6,       ///< value: 1
    GetTime = 7,        ///< value: mask of VstTimeInfo::Flag; answers VstTimeInfo*
    ProcessEvents = 8,  ///< ptr: VstEvents
    IOChanged = 13,     ///< channels or latency are others
    SizeWindow = 15,    ///< index: width; value: height
    GetSampleRate = 16, ///< answers Hz
    GetBlockSize = 17,  ///< answers samples
    GetCurrentProcessLevel = 23,
    GetVendorString = 32, ///< ptr: receives text
    GetProductString = 33,
    GetVendorVersion = 34,
    CanDo = 37, ///< ptr: text; answers 1 yes, 0 unknown, -1 no
    GetLanguage = 38,
    UpdateDisplay = 42, ///< all texts and values may be others
    BeginEdit = 43,     ///< index: parameter
    EndEdit = 44,
};

enum class PlugCategory : std::int32_t
{
    Unknown = 0,
    Effect = 1,
    Synth = 2,
};

/// Bytes of the host's buffers, the terminator included.
namespace TextSize
{
constexpr std::size_t ParameterText = 8;  ///< value and unit
constexpr std::size_t ParameterName = 32; ///< the interface has 8, hosts have 64 and more
constexpr std::size_t ProgramName = 24;
constexpr std::size_t EffectName = 32;
constexpr std::size_t Vendor = 64;
constexpr std::size_t Product = 64;
} // namespace TextSize

// What hosts that were compiled by others count on.
static_assert(sizeof(void*) != 8 ||
              (sizeof(AEffect) == 192 && offsetof(AEffect, dispatcher) == 8 &&
               offsetof(AEffect, getParameter) == 32 && offsetof(AEffect, numPrograms) == 40 &&
               offsetof(AEffect, flags) == 56 && offsetof(AEffect, reservedForHost) == 64 &&
               offsetof(AEffect, initialDelay) == 80 && offsetof(AEffect, ioRatio) == 92 &&
               offsetof(AEffect, object) == 96 && offsetof(AEffect, uniqueID) == 112 &&
               offsetof(AEffect, processReplacing) == 120 &&
               offsetof(AEffect, processDoubleReplacing) == 128 &&
               offsetof(AEffect, future) == 136));
static_assert(EffectMagic == 0x56737450 && IdentifyCode == 0x4E764566);

} // namespace Vst2
