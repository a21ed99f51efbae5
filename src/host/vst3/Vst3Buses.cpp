#include "host/vst3/Vst3Buses.h"

#include <algorithm>
#include <bit>

#include "foundation/strings/MStringFormatter.h"
#include "host/MAudioPlugin.h"
#include "host/vst3/Vst3Text.h"

namespace Vst3
{

namespace
{

/// The widest that the plugin can be, eight channels around.
constexpr SpeakerArrangement Widest = SpeakerArr::k80Music;

} // namespace

void Buses::Build()
{
    input = {.buses = plugin.GetInputBusCount()};
    output = {.buses = plugin.GetOutputBusCount()};
    hasEventInput = plugin.WantsMIDIInput();
    hasEventOutput = plugin.SendsMIDIOutput();
}

void Buses::Clear() noexcept
{
    input.buses = 0;
    output.buses = 0;
    hasEventInput = false;
    hasEventOutput = false;
}

int Buses::Count(std::int32_t media, std::int32_t direction) const noexcept
{
    if (direction != kInput && direction != kOutput)
        return 0;
    if (media == kAudio)
        return direction == kInput ? input.buses : output.buses;
    if (media == kEvent)
        return (direction == kInput ? hasEventInput : hasEventOutput) ? 1 : 0;
    return 0;
}

bool Buses::Describe(std::int32_t media, std::int32_t direction, std::int32_t index,
                     BusInfo& info) const
{
    if (!Has(media, direction, index))
        return false;
    BusInfo described{};
    described.mediaType = media;
    described.direction = direction;
    if (media == kEvent)
    {
        described.channelCount = 1;
        CopyText(described.name, direction == kInput ? "Midi In" : "Midi Out");
    }
    else
    {
        described.channelCount = std::popcount(GetArrangement(direction, index).value_or(0));
        CopyText(described.name, NameAudioBus(direction, index));
    }
    described.busType = index == 0 ? kMain : kAux;
    if (index == 0)
        described.flags = BusInfo::kDefaultActive;
    info = described;
    return true;
}

MString Buses::NameAudioBus(std::int32_t direction, int index) const
{
    if (direction == kOutput)
        return index == 0 ? MString("Stereo Out")
                          : MStringFormatter("Stereo Out {0}").Add(index + 1).Result();
    if (index > 0)
        return "Sidechain";
    return plugin.GetChannelsPerBus() == 2 ? "Stereo In" : "Surround In";
}

std::optional<SpeakerArrangement> Buses::GetArrangement(std::int32_t direction,
                                                        std::int32_t index) const noexcept
{
    if (!Has(kAudio, direction, index))
        return std::nullopt;
    return direction == kInput ? input.arrangement : output.arrangement;
}

bool Buses::Side::Has(std::span<const SpeakerArrangement> asked) const noexcept
{
    return asked.size() <= static_cast<std::size_t>(buses) &&
           std::ranges::all_of(asked,
                               [this](SpeakerArrangement wanted) { return wanted == arrangement; });
}

Buses::Layout Buses::Correct(const Side& side,
                             std::span<const SpeakerArrangement> asked) const noexcept
{
    if (asked.empty())
        return {side.arrangement, std::popcount(side.arrangement)};
    int channels = 0;
    for (const SpeakerArrangement arrangement : asked)
        channels = std::max(channels, std::popcount(arrangement));
    if (channels <= plugin.GetChannelsPerBus())
        return {asked.front(), channels};
    const SpeakerArrangement corrected =
        plugin.GetChannelsPerBus() == 2 ? SpeakerArr::kStereo : Widest;
    return {corrected, std::popcount(corrected)};
}

Buses::Answer Buses::Arrange(std::span<const SpeakerArrangement> inputs,
                             std::span<const SpeakerArrangement> outputs)
{
    const Layout newInput = Correct(input, inputs);
    const Layout newOutput = Correct(output, outputs);
    // A side without buses has nothing that could change, and follows the other.
    const bool isInputNew = input.buses == 0 || newInput.arrangement != input.arrangement;
    const bool isOutputNew = output.buses == 0 || newOutput.arrangement != output.arrangement;
    const bool isChanged = isInputNew && isOutputNew && !(input.buses == 0 && output.buses == 0) &&
                           plugin.SetChannels(newInput.channels, newOutput.channels);
    if (isChanged)
    {
        input.arrangement = newInput.arrangement;
        output.arrangement = newOutput.arrangement;
    }
    return {.isChanged = isChanged, .isAsAsked = input.Has(inputs) && output.Has(outputs)};
}

} // namespace Vst3
