#include "shell/modulators/MModulator.h"

#include <algorithm>
#include <cmath>

#include "foundation/threads/MException.h"
#include "foundation/xml/MXMLItem.h"
#include "foundation/xml/SettingsTree.h"
#include "host/MAudioPlugin.h"
#include "persistence/presets/ClipboardText.h"
#include "shell/modulators/MModulationCounter.h"

namespace
{

/// Of all modulators of the process.
MLock modulatorLock;

constexpr const char* PresetType = "QuillfernModulator";
constexpr const char* TargetKey = "Parameter";

/// Within 0.0 to 1.0, whatever a host's clock made of it.
double Wrap(double phase) noexcept
{
    if (!std::isfinite(phase))
        return 0.0;
    return phase >= 1.0 ? std::fmod(phase, 1.0) : phase;
}

/// What @p target should hold.
int GetClaim(const MModulatorTarget& target) noexcept
{
    return target.ParameterEnabled ? target.ParameterIndex : -1;
}

template <typename Part>
void LoadPart(MXMLItem& item, const char* key, Part& part)
{
    MXMLItem none("none");
    part.Load(item.HasSubItem(key) ? item.GetSubItem() : none);
}

MModulator::TargetList LoadTargets(const MXMLItem& item, const MAudioPluginAutomation& plugin)
{
    MModulator::TargetList targets;
    const MString key = TargetKey;
    for (const auto& subItem : item.GetSubItems())
        if (subItem->GetName() == key)
            targets.emplace_back().Load(*subItem, plugin);
    if (targets.empty())
        targets.emplace_back();
    return targets;
}

} // namespace

MModulator::MModulator(MModulationCounter& sharedCounter, MLock& pluginProcessingLock)
    : Envelope(&pluginProcessingLock),
      counter(sharedCounter),
      processingLock(pluginProcessingLock),
      Targets(1),
      claims(1, -1)
{
    Pitch.SetDetector(&pitchDetector);
}

MLock& MModulator::GetModulatorLock() noexcept
{
    return modulatorLock;
}

void MModulator::InitProcessing(double newSampleRate)
{
    SampleRate = newSampleRate;
    Follower.Reset(newSampleRate);
    Envelope.Reset(newSampleRate);
    Random.Reset(newSampleRate);
    Pitch.SetSampleRate(newSampleRate);
}

bool MModulator::Prepare()
{
    const bool isRunning = Enabled && !Frozen;
    if (isRunning || hasClaims)
    {
        const MLockGuard guard(modulatorLock);
        UpdateClaims(isRunning);
    }
    return isRunning;
}

void MModulator::ProcessBlock(const MAudioPluginTime& transport, const float* const* inputs,
                              int samples, int channels)
{
    WriteTargets(ComputeValue(transport, inputs, samples, channels));
}

double MModulator::FollowClock(const MAudioPluginTime& transport) noexcept
{
    if (!Sync.Enabled || !(transport.tempo > 0.0))
        return Frequency * (HiSpeed ? 10.0 : 1.0) / SampleRate;
    const double length = Sync.GetSyncLength();
    if (transport.position > 0.0 && !MIDIResetEnabled) // else notes alone place it
    {
        const double cycles = transport.position * length * 0.25 + Sync.Phase;
        Phase = Wrap(cycles - std::floor(cycles));
    }
    return transport.tempo / (SampleRate * 240.0) * length;
}

double MModulator::ComputeValue(const MAudioPluginTime& transport, const float* const* inputs,
                                int samples, int channels)
{
    const double increment = FollowClock(transport);
    const double lfo = Signal.Get(Phase);
    Phase = Wrap(Phase + samples * increment);

    const float* const* const heard = inputs + (SideChain ? MAudioPlugin::ChannelsPerBus : 0);
    const float* const* const end =
        std::find(heard, heard + std::clamp(channels, 0, MAudioPlugin::ChannelsPerBus), nullptr);
    const auto count = static_cast<std::size_t>(end - heard);
    const MModulatorMode mode = GetMode();
    if (std::exchange(lastMode, mode) != mode && mode == MModulatorMode::Pitch)
        Pitch.Reset();
    switch (mode)
    {
    case MModulatorMode::Normal:
        break;
    case MModulatorMode::Envelope:
        return Follower.Apply(Follower.Process(heard, samples, count), lfo, Signal);
    case MModulatorMode::MIDIEnvelope:
        return Envelope.Apply(Envelope.Process(heard, samples, count), lfo, Signal);
    case MModulatorMode::Random:
        return Random.Apply(Random.Process(transport, samples), lfo, Signal);
    case MModulatorMode::Pitch:
        return MModulatorProjection::Mix(Pitch.LFOModulation, lfo,
                                         Pitch.Process(count > 0 ? *heard : nullptr, samples));
    }
    return lfo;
}

void MModulator::WriteTargets(double value)
{
    const MLockGuard guard(modulatorLock);
    UpdateClaims(true); // the list may have changed since the last piece
    for (MModulatorTarget& target : Targets)
        if (const int index = GetClaim(target); index >= 0)
            counter.GetWriter().SetParameter(index, target.Map(value, Targets.front()));
}

void MModulator::UpdateClaims(bool isRunning)
{
    const std::size_t count = isRunning ? Targets.size() : 0;
    const auto begin = Targets.begin();
    const auto end = begin + static_cast<std::ptrdiff_t>(count);
    if (std::equal(begin, end, claims.begin(), claims.end(),
                   [](const MModulatorTarget& target, int claim)
                   { return GetClaim(target) == claim; }))
        return;
    // The new ones first, so that what stays is held throughout.
    std::for_each(begin, end,
                  [this](const MModulatorTarget& target)
                  { counter.Acquire(GetClaim(target), target.ValueBackup); });
    for (const int claim : claims)
        counter.Release(claim);
    claims.resize(count);
    std::transform(begin, end, claims.begin(), &GetClaim);
    hasClaims = !claims.empty();
}

void MModulator::OnNote(int channel, double velocity, bool on)
{
    const bool isRunning = Enabled && !Frozen;
    Envelope.OnNote(on, isRunning && GetMode() == MModulatorMode::MIDIEnvelope);

    constexpr double Tolerance = 1e-50;
    const int wanted = Channel;
    if (on && Enabled && MIDIResetEnabled && (wanted == 0 || wanted == channel + 1) &&
        velocity >= MinVelocity - Tolerance && velocity <= MaxVelocity + Tolerance)
        Phase = ResetPhase;
}

void MModulator::Store(MXMLItem& item) const
{
    const TargetList targets = [this]
    {
        const MLockGuard guard(modulatorLock);
        return Targets;
    }();
    const auto [signal, adsr] = [this]
    {
        const MLockGuard guard(processingLock);
        return std::pair(Signal.GetState(), Envelope.ADSR);
    }();
    item.Clear();
    for (const MModulatorTarget& target : targets)
        target.Store(item.AddSubItem(TargetKey));
    MModulatorSettings::Store(item);
    MXMLItem& follower = item.AddSubItem(FollowerKey);
    follower.SetAttribute("Enabled", GetMode() == MModulatorMode::Envelope ? 1 : 0);
    Follower.Store(follower);
    adsr.Store(item.AddSubItem(ADSRKey));
    Envelope.Store(item.AddSubItem(EnvelopeKey));
    Random.Store(item.AddSubItem(RandomKey));
    Pitch.Store(item.AddSubItem(PitchKey));
    signal.Store(item.AddSubItem(SignalKey));
    Sync.Store(item.AddSubItem("Sync"));
}

void MModulator::Load(MXMLItem& item, const MAudioPluginAutomation& plugin)
{
    CheckSettingsTree(item);
    TargetList targets = LoadTargets(item, plugin);
    MSignalGeneratorState signal;
    LoadPart(item, SignalKey, signal);
    MADSR adsr(&processingLock);
    adsr.SampleRate = SampleRate;
    LoadPart(item, ADSRKey, adsr);

    // From here on nothing fails.
    MModulatorSettings::Load(item);
    LoadPart(item, FollowerKey, static_cast<MModulatorFollowerSettings&>(Follower));
    LoadPart(item, EnvelopeKey, static_cast<MModulatorEnvelopeSettings&>(Envelope));
    LoadPart(item, RandomKey, static_cast<MModulatorRandomSettings&>(Random));
    LoadPart(item, PitchKey, static_cast<MModulatorPitchSettings&>(Pitch));
    LoadPart(item, "Sync", Sync);
    const MLockGuard guard(processingLock);
    Signal.SetState(std::move(signal));
    Envelope.ADSR.SetState(adsr);
    EditTargets([&](TargetList& list) { list.swap(targets); });
}

void MModulator::ForgetClaims()
{
    const MLockGuard guard(modulatorLock);
    for (const int claim : claims)
        counter.Forget(claim);
    claims.clear();
    hasClaims = false;
}

MString MModulator::Copy() const
{
    MXMLItem item(PresetType);
    Store(item);
    return clipboardtext::Write(item);
}

void MModulator::Paste(const MString& text, const MAudioPluginAutomation& plugin)
{
    const std::unique_ptr<MXMLItem> item = clipboardtext::Read(text, PresetType);
    const MLockGuard guard(processingLock);
    Load(*item, plugin);
}

void MModulator::RemoveTarget(std::size_t index)
{
    EditTargets(
        [index](TargetList& list)
        {
            if (list.size() < 2)
                throw MException("There must be at least one parameter for each modulator.");
            if (index < list.size())
                list.erase(list.begin() + static_cast<std::ptrdiff_t>(index));
        });
}
