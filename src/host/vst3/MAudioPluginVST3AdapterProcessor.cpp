// The adapter's audio thread: parameters, time, events, sound, events, in this order.

#include <algorithm>
#include <cmath>

#include "foundation/threads/MGuard.h"
#include "host/vst3/MAudioPluginVST3Adapter.h"

using namespace Vst3;

namespace
{

HostTime ReadTime(const ProcessContext& context) noexcept
{
    const auto has = [&](std::uint32_t flag) { return (context.state & flag) != 0; };
    HostTime time;
    if (has(ProcessContext::kProjectTimeMusicValid))
        time.position = context.projectTimeMusic;
    if (has(ProcessContext::kTempoValid))
        time.tempo = context.tempo;
    if (has(ProcessContext::kTimeSigValid))
        time.signature = {context.timeSigNumerator, context.timeSigDenominator};
    if (has(ProcessContext::kBarPositionValid))
        time.barStart = context.barPositionMusic;
    if (has(ProcessContext::kCycleActive))
        time.loop = {context.cycleStartMusic, context.cycleEndMusic};
    time.isPlaying = has(ProcessContext::kPlaying);
    return time;
}

} // namespace

Result MAudioPluginVST3Adapter::process(ProcessData& data)
{
    return MGuarded("MAudioPluginVST3Adapter::process", kResultFalse,
                    [&]
                    {
                        if (!isInitialized.load(std::memory_order_acquire))
                            return kNotInitialized;
                        if (data.numSamples <= 0)
                            return kResultOk;
                        if (data.symbolicSampleSize != kSample32)
                            return kResultFalse;
                        TakeParameterChanges(data.inputParameterChanges,
                                             data.outputParameterChanges);
                        TakeTime(data.processContext);
                        inputEvents.Deliver(*plugin, data.inputEvents, data.numSamples);
                        if (data.numInputs > 0 || data.numOutputs > 0)
                            channels.Process(*plugin, data);
                        SendOutputEvents(data.outputEvents, data.numSamples);
                        return kResultOk;
                    });
}

void MAudioPluginVST3Adapter::TakeParameterChanges(IParameterChanges* changes,
                                                   IParameterChanges* made)
{
    if (changes == nullptr || IgnoresHostParameters())
        return;
    const std::int32_t count = changes->getParameterCount();
    for (std::int32_t i = 0; i < count; ++i)
    {
        IParamValueQueue* const queue = changes->getParameterData(i);
        if (queue == nullptr || !parameters.Has(queue->getParameterId()))
            continue;
        // The last point alone: the plugin itself draws the line to it.
        const std::int32_t points = queue->getPointCount();
        std::int32_t offset = 0;
        double value = 0.0;
        if (points > 0 && queue->getPoint(points - 1, offset, value) == kResultOk)
            ApplyPoint(queue->getParameterId(), value, made);
    }
}

void MAudioPluginVST3Adapter::ApplyPoint(ParamID id, double value, IParameterChanges* made)
{
    parameters.Apply(id, value);
    const double rounded = parameters.GetOwn(id);
    if (made == nullptr || !std::isfinite(value) || !Parameters::IsOther(value, rounded))
        return;
    std::int32_t index = 0;
    if (IParamValueQueue* const queue = made->addParameterData(id, index))
        queue->addPoint(0, rounded, index);
}

void MAudioPluginVST3Adapter::TakeTime(const ProcessContext* context)
{
    if (context != nullptr && plugin->WantsTime())
        transport.Tell(*plugin, ReadTime(*context));
}

void MAudioPluginVST3Adapter::GenerateMIDIEvent(int offset, const std::uint8_t* bytes)
{
    if (outputEvents != nullptr && bytes != nullptr)
        outputEvents->Add(offset, bytes);
}

void MAudioPluginVST3Adapter::SendOutputEvents(IEventList* list, int samples)
{
    if (list == nullptr || outputEvents == nullptr)
        return;
    for (const MIDIQueue::Message& message : outputEvents->Take())
    {
        Event event{};
        if (!MakeEvent(message, event))
            continue;
        event.sampleOffset = std::clamp(event.sampleOffset, 0, samples - 1);
        list->addEvent(event);
    }
}
