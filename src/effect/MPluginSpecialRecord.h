#pragma once

#include <cstdint>

#include "foundation/strings/MString.h"

enum class MSpecialKind : std::int32_t
{
    SignalGenerator = 0, ///< data points to an MSignalGenerator
    ADSR = 1,            ///< data points to an MADSR
    ParameterObject = 3, ///< data points to a ready-made parameter object
};

/// A complex object that an effect publishes, such as a shape. The effect owns record and object.
struct MPluginSpecialRecord
{
    MSpecialKind kind = MSpecialKind::SignalGenerator;
    MString name;
    MString secondName; ///< the id of its parameters; empty for the name
    void* data = nullptr;
    /// Points to the pointer that holds the open editor, which is null while none is open.
    void* editorSlot = nullptr;
    std::int32_t tag = 0;
};
