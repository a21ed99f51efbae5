// The adapter as a component: buses, activation and the state.

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "foundation/threads/MGuard.h"
#include "host/PluginState.h"
#include "host/vst3/MAudioPluginVST3Adapter.h"
#include "host/vst3/Vst3HostStream.h"

using namespace Vst3;

Result MAudioPluginVST3Adapter::getControllerClassId(std::uint8_t* /*classId*/)
{
    return kNotImplemented; // there is no second class
}

Result MAudioPluginVST3Adapter::setIoMode(std::int32_t /*mode*/)
{
    return kNotImplemented;
}

std::int32_t MAudioPluginVST3Adapter::getBusCount(std::int32_t media, std::int32_t direction)
{
    return buses.Count(media, direction);
}

Result MAudioPluginVST3Adapter::getBusInfo(std::int32_t media, std::int32_t direction,
                                           std::int32_t index, BusInfo& bus)
{
    return MGuarded("MAudioPluginVST3Adapter::getBusInfo", kResultFalse,
                    [&] {
                        return buses.Describe(media, direction, index, bus) ? kResultTrue
                                                                            : kInvalidArgument;
                    });
}

Result MAudioPluginVST3Adapter::getRoutingInfo(RoutingInfo& /*input*/, RoutingInfo& /*output*/)
{
    return kNotImplemented;
}

Result MAudioPluginVST3Adapter::activateBus(std::int32_t media, std::int32_t direction,
                                            std::int32_t index, Bool /*state*/)
{
    // A bus that is off simply has no blocks.
    return buses.Has(media, direction, index) ? kResultTrue : kInvalidArgument;
}

Result MAudioPluginVST3Adapter::setActive(Bool state)
{
    return MGuarded("MAudioPluginVST3Adapter::setActive", kResultFalse,
                    [&]
                    {
                        const bool isOn = state != 0;
                        if (isOn && !isActive.load())
                            Prepare(); // nothing of the sound before goes on
                        isActive = isOn;
                        // Hosts take parameters to begin at the defaults that they were told, which
                        // are not what all of them have.
                        if (isOn && !std::exchange(hasToldValues, true))
                            Restart(kParamValuesChanged);
                        return kResultTrue;
                    });
}

Result MAudioPluginVST3Adapter::setBusArrangements(SpeakerArrangement* inputs,
                                                   std::int32_t inputCount,
                                                   SpeakerArrangement* outputs,
                                                   std::int32_t outputCount)
{
    if (inputCount < 0 || outputCount < 0 || (inputCount > 0 && inputs == nullptr) ||
        (outputCount > 0 && outputs == nullptr))
        return kInvalidArgument;
    return MGuarded("MAudioPluginVST3Adapter::setBusArrangements", kResultFalse,
                    [&]
                    {
                        if (isActive.load())
                            return kResultFalse;
                        const auto answer = buses.Arrange(
                            std::span(inputs, static_cast<std::size_t>(inputCount)),
                            std::span(outputs, static_cast<std::size_t>(outputCount)));
                        if (answer.isChanged)
                            Prepare();
                        return answer.isAsAsked ? kResultTrue : kResultFalse;
                    });
}

Result MAudioPluginVST3Adapter::getBusArrangement(std::int32_t direction, std::int32_t index,
                                                  SpeakerArrangement& arrangement)
{
    const auto present = buses.GetArrangement(direction, index);
    if (!present)
        return kInvalidArgument;
    arrangement = *present;
    return kResultTrue;
}

Result MAudioPluginVST3Adapter::canProcessSampleSize(std::int32_t symbolicSampleSize)
{
    return symbolicSampleSize == kSample32 ? kResultTrue : kResultFalse;
}

std::uint32_t MAudioPluginVST3Adapter::getLatencySamples()
{
    return static_cast<std::uint32_t>(latency.load());
}

std::uint32_t MAudioPluginVST3Adapter::getTailSamples()
{
    return static_cast<std::uint32_t>(tail.load());
}

Result MAudioPluginVST3Adapter::setupProcessing(ProcessSetup& setup)
{
    return MGuarded(
        "MAudioPluginVST3Adapter::setupProcessing", kResultFalse,
        [&]
        {
            if (setup.symbolicSampleSize != kSample32)
                return kResultFalse;
            const double rate = setup.sampleRate;
            if (rate > MAudioPlugin::MaxRate)
                return kResultFalse;
            if (rate > 100.0 && !plugin->SetHostSampleRate(static_cast<int>(std::lround(rate))))
                return kResultFalse;
            plugin->SetMaxBlock(setup.maxSamplesPerBlock);
            if (!isActive.load()) // else a block may be running
                channels.Reserve(std::min(setup.maxSamplesPerBlock, MAudioPlugin::MaxBlock));
            Prepare();
            return kResultOk;
        });
}

Result MAudioPluginVST3Adapter::setProcessing(Bool /*state*/)
{
    return kResultOk;
}

Result MAudioPluginVST3Adapter::getState(IBStream* state)
{
    if (state == nullptr)
        return kInvalidArgument;
    return MGuarded("MAudioPluginVST3Adapter::getState", kResultFalse,
                    [&] { return WriteAll(*state, pluginstate::Save(*plugin).GetData()); });
}

Result MAudioPluginVST3Adapter::setState(IBStream* state)
{
    if (state == nullptr)
        return kInvalidArgument;
    return MGuarded("MAudioPluginVST3Adapter::setState", kResultFalse,
                    [&]
                    {
                        MMemoryStream bytes = ReadToEnd(*state);
                        pluginstate::Load(*plugin, bytes);
                        parameters.ForgetSet();
                        Restart(kParamValuesChanged);
                        return kResultOk;
                    });
}
