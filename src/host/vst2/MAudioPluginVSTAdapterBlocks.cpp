// The adapter's audio thread: time, MIDI, sound, MIDI.

#include <algorithm>
#include <optional>

#include "foundation/threads/MGuard.h"
#include "foundation/threads/MLockGuard.h"
#include "host/vst2/MAudioPluginVSTAdapter.h"

using namespace Vst2;

namespace
{

/// Transport, automation, position, tempo, bars, cycle and signature.
constexpr std::int32_t TimeMask = 0x3EC7;

/// Hosts fill what the mask asks for; what they cannot tell is 0, or stands as before, in the
/// record.
HostTime ToHostTime(const VstTimeInfo& info) noexcept
{
    return {.position = info.ppqPos,
            .tempo = info.tempo,
            .barStart = info.barStartPos,
            .signature = {{info.timeSigNumerator, info.timeSigDenominator}},
            .loop = {{info.cycleStartPos, info.cycleEndPos}},
            .isPlaying = (info.flags & VstTimeInfo::TransportPlaying) != 0};
}

} // namespace

void MAudioPluginVSTAdapter::process(float** inputs, float** outputs, std::int32_t samples) noexcept
{
    MGuarded("MAudioPluginVSTAdapter::process", 0,
             [&]
             {
                 ProcessBlock(inputs, outputs, samples, false);
                 return 0;
             });
}

void MAudioPluginVSTAdapter::processReplacing(float** inputs, float** outputs,
                                              std::int32_t samples) noexcept
{
    MGuarded("MAudioPluginVSTAdapter::processReplacing", 0,
             [&]
             {
                 ProcessBlock(inputs, outputs, samples, true);
                 return 0;
             });
}

void MAudioPluginVSTAdapter::ProcessBlock(float** inputs, float** outputs, int samples,
                                          bool replacing)
{
    if (samples <= 0 || outputs == nullptr)
        return;
    PrepareProcessing();
    if (!inputQueue.IsEmpty() && !plugin->IsSuspended())
    {
        const MLockGuard guard(plugin->GetProcessingLock());
        DeliverQueue();
    }
    Spread<const float>(inputs, record.numInputs, inputBlocks);
    Spread<float>(outputs, record.numOutputs, outputBlocks);
    plugin->ProcessAudio(inputBlocks.data(), outputBlocks.data(), samples, replacing);
    if (replacing && plugin->GetOutputChannels() < channelsPerBus)
        SilenceUnused(outputs, samples);
    if (output != nullptr)
        if (const VstEvents* const events = output->Pack())
            CallHost(HostOpcode::ProcessEvents, 0, 0, events);
}

void MAudioPluginVSTAdapter::PrepareProcessing()
{
    if (!plugin->WantsTime())
        return;
    if (const VstTimeInfo* const info = getTimeInfo(TimeMask))
        transport.Tell(*plugin, ToHostTime(*info));
}

void MAudioPluginVSTAdapter::DeliverQueue()
{
    for (const auto& [offset, bytes] : inputQueue.Take())
        plugin->ProcessMIDIEvent(offset, bytes.data());
}

template <typename Sample>
void MAudioPluginVSTAdapter::Spread(Sample* const* row, int count,
                                    Channels<Sample>& channels) const noexcept
{
    int last = -1; // of the row in the present bus
    for (int i = 0; i < MAudioPlugin::MaxChannels; ++i)
    {
        const int place = i % MAudioPlugin::ChannelsPerBus;
        if (place < channelsPerBus) // behind the channels of a bus its last one again
            last = i / MAudioPlugin::ChannelsPerBus * channelsPerBus + place;
        channels.data()[i] = row != nullptr && last < count ? row[last] : nullptr;
    }
}

void MAudioPluginVSTAdapter::SilenceUnused(float* const* outputs, int samples) const noexcept
{
    const int used = plugin->GetOutputChannels();
    float* const* const end = outputs + record.numOutputs;
    for (int i = 0; i < record.numOutputs; ++i)
    {
        // A block that stands for two channels has been written.
        const bool isOnly = std::find(outputs, end, outputs[i]) == outputs + i;
        if (i % channelsPerBus >= used && isOnly && outputs[i] != nullptr)
            std::fill_n(outputs[i], samples, 0.0f);
    }
}

std::int32_t MAudioPluginVSTAdapter::processEvents(const VstEvents* events) noexcept
{
    return MGuarded("MAudioPluginVSTAdapter::processEvents", 0,
                    [&]
                    {
                        if (events == nullptr || events->numEvents <= 0)
                            return 1;
                        if (plugin->WantsTime())
                            if (const VstTimeInfo* const info = getTimeInfo(TimeMask))
                                HostTransport::TellEventTime(*plugin, ToHostTime(*info));

                        // The audio thread does not wait for whoever suspended processing.
                        const bool isDelivered = !plugin->IsSuspended();
                        std::optional<MLockGuard> guard;
                        if (isDelivered)
                        {
                            guard.emplace(plugin->GetProcessingLock());
                            DeliverQueue(); // older than these
                        }
                        const VstEvent* const* const list =
                            events->events.data(); // longer than declared
                        for (int i = 0; i < events->numEvents; ++i)
                        {
                            const VstEvent* const event = list[i];
                            if (event == nullptr || event->type != VstEvent::Midi)
                                continue;
                            const auto* const midi = reinterpret_cast<const VstMidiEvent*>(event);
                            if (isDelivered)
                                plugin->ProcessMIDIEvent(midi->deltaFrames, midi->midiData.data());
                            else
                                inputQueue.Add(midi->deltaFrames, midi->midiData.data());
                        }
                        return 1;
                    });
}

void MAudioPluginVSTAdapter::GenerateMIDIEvent(int offset, const std::uint8_t* bytes)
{
    if (output != nullptr)
        output->GetQueue().Add(offset, bytes);
}
