#include "host/MAudioPlugin.h"

#include <algorithm>
#include <cmath>

#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MLockGuard.h"
#include "host/AutomationUpdateRequestThread.h"
#include "host/MAudioPluginAdapter.h"

namespace
{

MString ChannelName(const char* format, int number)
{
    return MStringFormatter(format).Add(number).Result();
}

} // namespace

MAudioPlugin::MAudioPlugin() = default;

MAudioPlugin::~MAudioPlugin() = default;

bool MAudioPlugin::SetChannels(int inputChannels, int outputChannels)
{
    if (inputChannels < 0 || inputChannels > ChannelsPerBus || outputChannels < 1 ||
        outputChannels > ChannelsPerBus)
        return false;
    const MLockGuard guard(settingsLock);
    wishes.inputChannels = inputChannels;
    wishes.outputChannels = outputChannels;
    return true;
}

bool MAudioPlugin::SetHostSampleRate(int rate)
{
    const MLockGuard guard(settingsLock);
    if (rate < MinRate || rate > MaxRate / upsamplingFactor)
        return false;
    wishes.sampleRate = rate;
    return true;
}

void MAudioPlugin::SetMaxBlock(int samples)
{
    const MLockGuard guard(settingsLock);
    wishes.maxBlock = std::clamp(samples, LeastMaxBlock, MaxBlock);
}

void MAudioPlugin::SetBuses(int newInputBuses, int newOutputBuses, int busChannels)
{
    const MLockGuard guard(settingsLock);
    inputBuses = newInputBuses;
    outputBuses = newOutputBuses;
    channelsPerBus = busChannels;
    wishes.inputChannels = busChannels;
    wishes.outputChannels = busChannels;
    TakeLayout();
}

void MAudioPlugin::TakeLayout() noexcept
{
    const int inputChannels = inputBuses > 0 ? wishes.inputChannels : 0;
    const int wanted = std::max(inputChannels, wishes.outputChannels);
    // Only stereo and the widest have arrangements, so what stereo cannot hold gets the latter.
    if (wanted > channelsPerBus)
        channelsPerBus = ChannelsPerBus;
    forcedChannels = wanted < channelsPerBus ? wanted : -1;
    inputChannelsTotal = inputChannels > 0 ? inputBuses * channelsPerBus : 0;
    outputChannelsTotal = outputBuses * channelsPerBus;
    hostSampleRate = wishes.sampleRate;
    sampleRate = hostSampleRate * upsamplingFactor;
    maxBlock = wishes.maxBlock;
}

int MAudioPlugin::GetEffectInputChannels() const
{
    return inputChannelsTotal > 0 ? GetEffectChannels() : 0;
}

int MAudioPlugin::GetEffectChannels() const
{
    return CountChannels();
}

int MAudioPlugin::GetInputChannels() const
{
    return inputChannelsTotal > 0 ? GetOutputChannels() : 0;
}

int MAudioPlugin::GetOutputChannels() const
{
    return CountChannels();
}

int MAudioPlugin::GetInputBusCount() const noexcept
{
    return inputChannelsTotal / channelsPerBus;
}

int MAudioPlugin::GetOutputBusCount() const noexcept
{
    return outputChannelsTotal / channelsPerBus;
}

MString MAudioPlugin::GetInputChannelName(int channel) const
{
    if (channel < 0 || channel / ChannelsPerBus >= GetInputBusCount())
        return {};
    const bool isMain = channel < ChannelsPerBus;
    return ChannelName(isMain ? "In {0}" : "Sidechain {0}", channel % ChannelsPerBus);
}

MString MAudioPlugin::GetOutputChannelName(int channel) const
{
    if (channel < 0 || channel / ChannelsPerBus >= GetOutputBusCount())
        return {};
    return ChannelName("Out {0}", channel);
}

void MAudioPlugin::SetParameterFromHostSafely(int index, double value01)
{
    if (!std::isfinite(value01) ||
        (adapterPointer != nullptr && adapterPointer->IgnoresHostParameters()))
        return;
    SetParameter(index, std::clamp(value01, 0.0, 1.0), false);
}

void MAudioPlugin::SendAllAutomation(const AutomationAdapter& adapter)
{
    if (adapterPointer == nullptr)
        return;
    for (int i = 0; i < adapter.GetCount(); ++i)
    {
        const int index = adapter.GetFirstIndex() + i;
        adapterPointer->SendAutomation(index, GetRestorableParameter(index));
    }
}

void MAudioPlugin::SendBypassAutomation(bool isBypassed)
{
    if (adapterPointer != nullptr)
        adapterPointer->SendBypassAutomation(isBypassed);
}

void MAudioPlugin::GenerateMIDIEvent(int offset, const std::uint8_t* bytes)
{
    if (adapterPointer != nullptr)
        adapterPointer->GenerateMIDIEvent(offset, bytes);
}

bool MAudioPlugin::ChangeEditorSize(int width, int height)
{
    return adapterPointer != nullptr && adapterPointer->ChangeEditorSize(width, height);
}

void MAudioPlugin::StartUpdateRequests()
{
    if (updateRequests == nullptr)
        updateRequests = std::make_unique<AutomationUpdateRequestThread>(*this);
}

void MAudioPlugin::StopUpdateRequests() noexcept
{
    updateRequests.reset();
}
