#include "shell/ChannelModes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "dsp/kernels/Arithmetic.h"

namespace
{

constexpr std::array<MChannelModeInfo, MChannelModeInfo::Count> Modes = {{
    {"Left + Right", "Default setting for stereo (or mono) processing.", 2, 2, false},
    {"Left", "Processes the left channel only.", 1, 2, false},
    {"Right", "Processes the right channel only.", 1, 2, false},
    {"Mono", "Processes mono content.", 1, 2, true},
    {"Stereo", "Processes stereo content.", 1, 2, true},
    {"Mono + Stereo", "Processes mono & stereo content separately.", 2, 2, true},
    {"Left + Right (neg)", "Processes both channels, but inverts the right one.", 2, 2, true},
    {"Surround", "Surround processing of up to 8 channels.", 8, 8, false},
}};

} // namespace

const MChannelModeInfo& MChannelModeInfo::Get(MChannelMode mode) noexcept
{
    return Modes[static_cast<std::size_t>(mode)];
}

bool MChannelModeInfo::Find(const MString& name, MChannelMode& mode) noexcept
{
    for (std::size_t i = 0; i < Modes.size(); ++i)
        if (name == Modes[i].name)
        {
            mode = static_cast<MChannelMode>(i);
            return true;
        }
    return false;
}

int MChannelModeInfo::CountEffectChannels(int channels) const noexcept
{
    if (!isTransformed)
        return std::min(channels, processedChannels);
    return std::min(channels, outputChannels) == 2 ? processedChannels : channels;
}

ChannelModeTransform::ChannelModeTransform(MChannelMode modeOfPair, bool isPair) noexcept
    : mode(isPair ? modeOfPair : MChannelMode::LeftRight)
{
}

void ChannelModeTransform::Forward(float** inputs, float** outputs, int samples) const noexcept
{
    if (IsMidSide())
        kernels::MidSide(inputs[0], inputs[1], samples);
    if (mode == MChannelMode::LeftRightNegative)
        kernels::Scale(inputs[1], inputs[1], -1.0f, samples);
    if (SwapsChannels())
    {
        std::swap(inputs[0], inputs[1]);
        std::swap(outputs[0], outputs[1]);
    }
}

void ChannelModeTransform::Back(float** inputs, float** outputs, int samples) const noexcept
{
    if (SwapsChannels())
    {
        std::swap(inputs[0], inputs[1]);
        std::swap(outputs[0], outputs[1]);
    }
    if (IsMidSide())
        kernels::SumDifference(outputs[0], outputs[1], samples);
}

bool ChannelModeTransform::SwapsChannels() const noexcept
{
    return mode == MChannelMode::Right || mode == MChannelMode::Stereo;
}

bool ChannelModeTransform::IsMidSide() const noexcept
{
    return mode == MChannelMode::Mono || mode == MChannelMode::Stereo ||
           mode == MChannelMode::MonoStereo;
}
