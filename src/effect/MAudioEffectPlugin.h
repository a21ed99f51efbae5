#pragma once

#include "effect/MPlugin.h"

struct MProcessingContext;

/// A plugin that makes or changes sound, block by block.
class MAudioEffectPlugin : public MPlugin
{
public:
    std::intptr_t Dispatch(std::int32_t command, const MPluginCommandArguments* arguments) override;

    /// Prepares for @p channels (0 to 8) at @p rate Hz; sound starts anew. A direct caller follows
    /// with Update and ResetParameterRamps, which the command does by itself. Not during a block.
    /// Answers 0.
    virtual std::int32_t InitProcessing(std::int32_t channels, std::int32_t rate) = 0;
    virtual void InitProcessingDone() {}
    /// Makes one block. @p inputs and @p outputs point to one block of @p samples per channel; a
    /// null block is passed over. Audio thread; does not allocate.
    virtual void Process(MProcessingContext* context, const float* const* inputs,
                         float* const* outputs, std::int32_t samples) = 0;
    virtual void ProcessUpdate() {}
    virtual std::int32_t GetQueryA() { return 1; }
    virtual std::int32_t GetLatency() { return 0; } ///< samples
    virtual std::int32_t GetTail() { return -1; }
    virtual void Notify(std::intptr_t /*a0*/) {}
};
