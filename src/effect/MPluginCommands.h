#pragma once

#include <array>
#include <cstdint>

/// What an entry point can be asked to do. a0 to a3 are the values of the argument pairs.
enum class MPluginCommand : std::int32_t
{
    SetHost = 0, ///< a0 peer instance, a1 peer call; answers the plugin
    Destroy = 1, ///< waits out a call in progress, then destroys the object
    GetInfo = 2, ///< answers the MPluginInfo*
    Start = 3,
    ParameterChanged = 4, ///< a0 index; outside the list it still updates
    CreateEditor = 5,     ///< a0 editor creation block
    DestroyEditor = 6,    ///< a0 editor creation block
    GetInstance = 7,      ///< answers the instance; never reaches the object
    Store = 11,           ///< a0 MXMLItem*; answers 1 or 0
    Load = 12,            ///< a0 MXMLItem*; answers 1 or 0
    ReservedA = 13,
    ReservedB = 14, ///< a0
    Randomize = 15, ///< a0 double* amount
    ReservedC = 20, ///< a0, a1
    // Of audio effects:
    InitProcessing = 100, ///< a0 channels, a1 sample rate in Hz
    Process = 101,        ///< a0 context, a1 float* const* inputs, a2 outputs, a3 samples
    QueryA = 102,
    GetLatency = 103, ///< answers samples
    Notify = 104,     ///< a0
    GetTail = 105,
    ProcessUpdate = 106,
    InitProcessingDone = 107,
};

/// What a plugin can ask of its host. A service that the host does not offer answers 0.
enum class MPluginHostCommand : std::int32_t
{
    Forward = 0, ///< a0, to the host's own operation
    Edited = 1,  ///< after an edit in the plugin's editor
    Reserved2 = 2,
    Reserved3 = 3, ///< a0; answers 0
    ParameterListChanged = 4,
    GetContext = 5,    ///< answers the processing context
    GetSampleRate = 6, ///< answers Hz
    RefreshEditors = 7,
};

/// The argument block of every command: four pairs, of which the unused are 0. It belongs to the
/// caller, for the time of the call.
struct MPluginCommandArguments
{
    struct Pair
    {
        std::int32_t tag = 1;
        std::intptr_t value = 0; ///< a number or a pointer
    };

    MPluginCommandArguments() = default;
    explicit MPluginCommandArguments(std::intptr_t a0, std::intptr_t a1 = 0, std::intptr_t a2 = 0,
                                     std::intptr_t a3 = 0) noexcept
        : pairs{{{1, a0}, {1, a1}, {1, a2}, {1, a3}}}
    {
    }

    std::array<Pair, 4> pairs;
};

/// The form of every entry point, and of the way back from a plugin to its host. A null instance
/// creates one; null arguments are four zeros.
using MPluginCall = std::intptr_t (*)(void* instance, std::int32_t command,
                                      const MPluginCommandArguments* arguments) noexcept;
