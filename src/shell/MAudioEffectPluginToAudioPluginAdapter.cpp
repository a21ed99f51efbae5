#include "shell/MAudioEffectPluginToAudioPluginAdapter.h"

#include <algorithm>
#include <limits>

#include "effect/MPluginInfo.h"
#include "effect/MPluginParameterRecord.h"
#include "effect/MPluginSystem.h"
#include "foundation/threads/MException.h"
#include "foundation/threads/MGuard.h"
#include "foundation/threads/MLockGuard.h"
#include "foundation/xml/MStorageDescriptor.h"
#include "foundation/xml/MXMLItem.h"
#include "foundation/xml/SettingsTree.h"
#include "host/MAudioPluginAdapter.h"
#include "shell/PluginPresets.h"

namespace
{

using Shell = MAudioEffectPluginToAudioPluginAdapter;

/// Where an effect's host keeps the shell.
constexpr std::size_t ShellChild = 0;

Shell* ShellOf(MPluginHost& host) noexcept
{
    return static_cast<Shell*>(host.children[ShellChild].value);
}

// What an effect may ask of the shell. Without one all answer 0.

std::intptr_t OnParameterListChanged(MPluginHost& host, std::intptr_t)
{
    if (Shell* const shell = ShellOf(host))
        shell->RefreshParameterList();
    return 0;
}

std::intptr_t OnGetContext(MPluginHost& host, std::intptr_t)
{
    Shell* const shell = ShellOf(host);
    return shell != nullptr ? reinterpret_cast<std::intptr_t>(&shell->GetContext()) : 0;
}

std::intptr_t OnGetSampleRate(MPluginHost& host, std::intptr_t)
{
    Shell* const shell = ShellOf(host);
    return shell != nullptr ? shell->GetSampleRate() : 0;
}

std::intptr_t OnRefreshEditors(MPluginHost& host, std::intptr_t)
{
    if (Shell* const shell = ShellOf(host))
        for (MAutomationAdapter* const adapter : shell->GetAdapters())
            shell->NeedUpdateEditor(*adapter);
    return 0;
}

} // namespace

MAudioEffectPluginToAudioPluginAdapter::MAudioEffectPluginToAudioPluginAdapter(int channelsOfBus)
    : busChannels(channelsOfBus),
      controllers(*this),
      modulators(*this),
      multiParameters(*this)
{
}

MAudioEffectPluginToAudioPluginAdapter::~MAudioEffectPluginToAudioPluginAdapter()
{
    StopUpdateRequests(); // it looks at what ends here
    if (host == nullptr)
        return;
    parameters = MParameterList();
    host->children[ShellChild].value = nullptr;
    host->CallPlugin(MPluginCommand::Destroy); // waits for the lock that it shares with this
}

void MAudioEffectPluginToAudioPluginAdapter::Initialize(const MString& productName,
                                                        const MString& makerName,
                                                        MPluginCall entryPoint, int /*editorWidth*/,
                                                        int /*editorHeight*/)
{
    name = productName;
    maker = makerName;
    CreateEffect(entryPoint, productName);
    try
    {
        WireEffect();
    }
    catch (const MException&)
    {
        throw MException("Error creating plugin.");
    }
    UpdateEffect();
}

void MAudioEffectPluginToAudioPluginAdapter::CreateEffect(MPluginCall entryPoint,
                                                          const MString& productName)
{
    MPluginSystem system;
    if (system.CreatePlugin(entryPoint, productName, host) != MPluginSystem::Result::Created)
        throw MException("Error creating plugin.");
    host->children[ShellChild].value = this;
    host->SetService(MPluginHostCommand::ParameterListChanged, &OnParameterListChanged);
    host->SetService(MPluginHostCommand::GetContext, &OnGetContext);
    host->SetService(MPluginHostCommand::GetSampleRate, &OnGetSampleRate);
    host->SetService(MPluginHostCommand::RefreshEditors, &OnRefreshEditors);
}

void MAudioEffectPluginToAudioPluginAdapter::WireEffect()
{
    const MPluginInfo& info = *host->GetPluginInfo();
    SetBuses(std::min(info.inputBusCount, MaxBuses), std::min(info.outputBusCount, MaxBuses),
             busChannels);
    if (info.midiProcessor != nullptr)
        AddListener(*info.midiProcessor, MMIDIProcessorBase::AllChannels);

    parameters.Wire(*GetEffect(), *this);
    std::vector<int> interpolated;
    for (MAutomationAdapter* const adapter : parameters.GetAdapters())
    {
        AddAdapter(*adapter);
        const bool isFloat =
            adapter->GetCount() == 1 && adapter->GetParameterType(0) == MAutomationType::Float;
        if (isFloat)
            interpolated.push_back(adapter->GetFirstIndex());
    }
    GetInterpolation().SetParameters(interpolated);
    // Hosts keep these indices for ever: new parameters go behind all others.
    modulators.AddParameters();
    for (MMultiParameter& slot : multiParameters)
        AddAdapter(slot);
}

MAudioEffectPlugin* MAudioEffectPluginToAudioPluginAdapter::GetEffect() const noexcept
{
    return host != nullptr ? host->GetPlugin() : nullptr;
}

void MAudioEffectPluginToAudioPluginAdapter::InitEffect()
{
    if (MAudioEffectPlugin* const effect = GetEffect())
    {
        effect->InitProcessing(GetEffectChannels(), sampleRate);
        effect->Update();
        effect->ResetParameterRamps();
        effectMaxBlock = host->GetPluginInfo()->maxProcessingBlock;
    }
    modulators.InitProcessing(sampleRate);
    multiParameters.InitProcessing(sampleRate);
}

void MAudioEffectPluginToAudioPluginAdapter::InitDone()
{
    if (MAudioEffectPlugin* const effect = GetEffect())
        effect->InitProcessingDone();
}

void MAudioEffectPluginToAudioPluginAdapter::ProcessPre(const float* const* /*inputs*/,
                                                        int /*samples*/)
{
    // Nothing but interpolation cuts blocks while no modulator runs and no multiparameter glides.
    interpolationBlockSize = maxLFOBlockSize.load(std::memory_order_relaxed);
    subBlockSize = effectMaxBlock;
    const bool isModulating = modulators.Prepare();
    if (multiParameters.Prepare() || isModulating)
        subBlockSize = std::min(subBlockSize, interpolationBlockSize);
}

void MAudioEffectPluginToAudioPluginAdapter::ProcessPost(float* const* /*outputs*/, int /*samples*/)
{
}

void MAudioEffectPluginToAudioPluginAdapter::Process(float* const* inputs, float* const* outputs,
                                                     int samples)
{
    MGuarded("MAudioEffectPluginToAudioPluginAdapter::Process", 0,
             [&]
             {
                 PrepareForProcessing(inputs, samples);
                 if (MAudioEffectPlugin* const effect = GetEffect())
                     effect->Process(&context, inputs, outputs, samples);
                 return 0;
             });
}

void MAudioEffectPluginToAudioPluginAdapter::PrepareForProcessing(const float* const* inputs,
                                                                  int samples)
{
    FlushNotes();
    modulators.Process(time, inputs, samples, GetEffectChannels());
    multiParameters.Process(samples);
}

void MAudioEffectPluginToAudioPluginAdapter::FlushNotes()
{
    if (midiFlushPending.load(std::memory_order_relaxed) &&
        midiFlushPending.exchange(false, std::memory_order_relaxed))
        ProcessAllNotesOff(0, time.position);
}

void MAudioEffectPluginToAudioPluginAdapter::UpdateEffect()
{
    if (MAudioEffectPlugin* const effect = GetEffect())
        effect->Update();
}

void MAudioEffectPluginToAudioPluginAdapter::ProcessUpdate()
{
    MGuarded("MAudioEffectPluginToAudioPluginAdapter::ProcessUpdate", 0,
             [this]
             {
                 if (MAudioEffectPlugin* const effect = GetEffect())
                     effect->ProcessUpdate();
                 return 0;
             });
}

PluginPresets& MAudioEffectPluginToAudioPluginAdapter::GetPresets()
{
    if (presets == nullptr)
        presets = std::make_unique<PluginPresets>(*this);
    return *presets;
}

void MAudioEffectPluginToAudioPluginAdapter::RefreshParameterList()
{
    const SuspendScope suspended(*this);
    const MLockGuard settings(GetSettingsLock());
    const MLockGuard processing(GetProcessingLock());
    DestroyTemporaryAutomationAdapters(); // the others live as long as the effect
}

int MAudioEffectPluginToAudioPluginAdapter::GetLatency()
{
    MAudioEffectPlugin* const effect = GetEffect();
    return effect != nullptr ? std::max(0, effect->GetLatency()) : 0;
}

int MAudioEffectPluginToAudioPluginAdapter::GetTail()
{
    MAudioEffectPlugin* const effect = GetEffect();
    return effect != nullptr ? effect->GetTail() : -1;
}

void MAudioEffectPluginToAudioPluginAdapter::SetMaxLFOBlockSize(int samples) noexcept
{
    maxLFOBlockSize = std::clamp(samples, 1, MaxMaxLFOBlockSize);
}

void MAudioEffectPluginToAudioPluginAdapter::OnCustomParameterChanged(MAutomationAdapter& adapter)
{
    NeedUpdateEditor(adapter);
}

void MAudioEffectPluginToAudioPluginAdapter::OnNoteBegin()
{
    const MLockGuard guard(GetProcessingLock());
    FlushNotes(); // those from before; what is played for the block to come stays
}

void MAudioEffectPluginToAudioPluginAdapter::ProcessNote(int offset, double quarters, int channel,
                                                         int note, double velocity, bool on)
{
    const MLockGuard guard(GetProcessingLock());
    MMIDIProcessor::ProcessNote(offset, quarters, channel, note, velocity, on);
    if (on)
        controllers.OnNote(channel, note, GetPitch());
    modulators.OnNote(channel, velocity, on);
}

void MAudioEffectPluginToAudioPluginAdapter::ProcessPressure(int offset, double quarters,
                                                             int channel, int note, double value)
{
    const MLockGuard guard(GetProcessingLock());
    MMIDIProcessor::ProcessPressure(offset, quarters, channel, note, value);
    controllers.OnSource(channel, MMIDIControllerAssignment::Pressure, 2.0 * value - 1.0);
}

void MAudioEffectPluginToAudioPluginAdapter::ProcessPitchWheel(int offset, double quarters,
                                                               int channel, double value)
{
    const MLockGuard guard(GetProcessingLock());
    MMIDIProcessor::ProcessPitchWheel(offset, quarters, channel, value);
    controllers.OnSource(channel, MMIDIControllerAssignment::PitchBend, value);
}

bool MAudioEffectPluginToAudioPluginAdapter::ProcessMIDIController(int offset, double quarters,
                                                                   int channel, int number,
                                                                   double value)
{
    const MLockGuard guard(GetProcessingLock());
    const bool isTaken =
        MMIDIProcessor::ProcessMIDIController(offset, quarters, channel, number, value);
    controllers.OnSource(channel, number, 2.0 * value - 1.0);
    return isTaken;
}

void MAudioEffectPluginToAudioPluginAdapter::Store(const MStorageDescriptor& storage)
{
    MTraced("MAudioEffectPluginToAudioPluginAdapter::Store",
            [&]
            {
                if (!storage.storing)
                {
                    CheckSettingsTree(storage.item); // before anything changes
                    return ReplaceState([&] { TakeState(storage); });
                }
                // No load comes between the parts; blocks go on.
                const MLockGuard settings(GetSettingsLock());
                StoreState(storage);
                StoreSlots(storage.item);
                LimitChannelMode();
            });
}

void MAudioEffectPluginToAudioPluginAdapter::ReplaceState(const std::function<void()>& take)
{
    const int latencyBefore = latency;
    try
    {
        const MLockGuard settings(GetSettingsLock());
        take();
    }
    catch (...)
    {
        InitDone(); // of the state from before
        throw;
    }
    InitDone();
    for (MAutomationAdapter* const adapter : GetAdapters())
        NeedUpdateEditor(*adapter);
    if (latency != latencyBefore && GetAdapter() != nullptr)
        GetAdapter()->LatencyChanged();
}

void MAudioEffectPluginToAudioPluginAdapter::TakeState(const MStorageDescriptor& storage)
{
    const std::function<void()> bringBack = KeepState();
    const SuspendScope suspended(*this);
    const MLockGuard processing(GetProcessingLock());
    try
    {
        ApplyState([&] { StoreState(storage); });
    }
    catch (...)
    {
        ApplyState(bringBack);
        throw;
    }
}

std::function<void()> MAudioEffectPluginToAudioPluginAdapter::KeepState()
{
    struct Kept
    {
        std::function<void()> effect;
        decltype(controllers.assignments) assignments;
        decltype(controllers.noteControllers) noteControllers;
        ActivePresetChoice activePresets;
        MXMLItem movers{"settings"}; ///< as text, for they hold what cannot be copied
    };
    const auto kept = std::make_shared<Kept>();
    kept->activePresets = activePresets;
    if (GetEffect() != nullptr)
        kept->effect = GetEffect()->KeepState();
    modulators.Store(kept->movers);
    multiParameters.Store(kept->movers);
    {
        const MLockGuard processing(GetProcessingLock());
        kept->assignments = controllers.assignments;
        kept->noteControllers = controllers.noteControllers;
    }
    return
        [this, kept, index = std::int32_t{currentPresetIndex}, mode = GetChannelMode(),
         isBypassed = IsBypassed(), lfoBlock = GetMaxLFOBlockSize(),
         upsampling = std::int32_t{wantedUpsampling}, isHighQuality = bool{highQualityUpsampling}]
    {
        if (kept->effect)
            kept->effect();
        modulators.Load(kept->movers);
        multiParameters.Load(kept->movers);
        activePresets = kept->activePresets;
        controllers.assignments = kept->assignments;
        controllers.noteControllers = kept->noteControllers;
        currentPresetIndex = index;
        channelMode = mode;
        SetBypassed(isBypassed);
        SetMaxLFOBlockSize(lfoBlock);
        wantedUpsampling = upsampling;
        highQualityUpsampling = isHighQuality;
    };
}

void MAudioEffectPluginToAudioPluginAdapter::ApplyState(const std::function<void()>& load)
{
    load();
    InitLocked();
    LimitChannelMode(); // by the layout that the host wants now
}

void MAudioEffectPluginToAudioPluginAdapter::StoreState(const MStorageDescriptor& storage)
{
    StoreSettings(storage);
    MXMLItem& item = storage.item;
    if (storage.storing)
    {
        item.SetAttribute("ChannelMode", MString(MChannelModeInfo::Get(GetChannelMode()).name));
        if (IsBypassed())
            item.SetAttribute("Bypass", 1);
        if (GetMaxLFOBlockSize() != DefaultMaxLFOBlockSize)
            item.SetAttribute("MaxLFOBlockSize", GetMaxLFOBlockSize());
    }
    else
    {
        LoadChannelMode(item);
        SetBypassed(item.GetAttribute("Bypass", "0").ToInteger() != 0);
        SetMaxLFOBlockSize(static_cast<int>(std::clamp<std::int64_t>(
            item.GetAttribute("MaxLFOBlockSize", MString::FromInteger(DefaultMaxLFOBlockSize))
                .ToInteger(),
            1, MaxMaxLFOBlockSize)));
    }
}

void MAudioEffectPluginToAudioPluginAdapter::LimitChannelMode()
{
    // The effect gets as many channels as before, so nothing needs to be prepared.
    MChannelMode tooWide = MChannelMode::Surround;
    if (CountChannels() < 3)
        channelMode.compare_exchange_strong(tooWide, MChannelMode::LeftRight);
}

void MAudioEffectPluginToAudioPluginAdapter::LoadChannelMode(MXMLItem& item)
{
    if (item.HasAttribute("ChannelMode"))
    {
        MChannelMode mode = GetChannelMode();
        double number = 0.0;
        const MString& text = item.GetAttribute();
        if (MChannelModeInfo::Find(text, mode))
            channelMode = mode;
        else if (text.ReadDouble(number) && number >= 0.0 && number < MChannelModeInfo::Count)
            channelMode = static_cast<MChannelMode>(static_cast<int>(number));
    }
    // Older states know this mode alone.
    if (item.HasAttribute("EnableSurroundProcessing"))
        channelMode =
            item.GetAttribute().ToInteger() != 0 ? MChannelMode::Surround : MChannelMode::LeftRight;
}

void MAudioEffectPluginToAudioPluginAdapter::StoreSettings(const MStorageDescriptor& storage)
{
    MTraced("MAudioEffectPluginToAudioPluginAdapter::StoreSettings",
            [&]
            {
                MAudioEffectPlugin* const effect = GetEffect();
                if (storage.storing)
                    storage.item.Clear();
                if (effect != nullptr)
                    storage.storing ? effect->Store(storage.item) : effect->Load(storage.item);
                StoreStandardSettings(storage);
            });
}

void MAudioEffectPluginToAudioPluginAdapter::StoreStandardSettings(
    const MStorageDescriptor& storage)
{
    constexpr const char* IndexKey = "CurrentPresetIndex";
    StoreLFO(storage);
    StoreControllers(storage);
    StoreMultiParameters(storage);
    StoreActivePresets(storage);
    if (storage.storing)
        storage.item.SetAttribute(IndexKey, currentPresetIndex);
    else
        currentPresetIndex = static_cast<std::int32_t>(std::clamp<std::int64_t>(
            storage.item.GetAttribute(IndexKey, "0").ToInteger(),
            std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}

void MAudioEffectPluginToAudioPluginAdapter::StoreLFO(const MStorageDescriptor& storage)
{
    MTraced("MAudioEffectPluginToAudioPluginAdapter::StoreLFO", [&]
            { storage.storing ? modulators.Store(storage.item) : modulators.Load(storage.item); });
}

void MAudioEffectPluginToAudioPluginAdapter::StoreMultiParameters(const MStorageDescriptor& storage)
{
    MTraced("MAudioEffectPluginToAudioPluginAdapter::StoreMultiParameters",
            [&] {
                storage.storing ? multiParameters.Store(storage.item)
                                : multiParameters.Load(storage.item);
            });
}

void MAudioEffectPluginToAudioPluginAdapter::StoreActivePresets(const MStorageDescriptor& storage)
{
    MGuarded("MAudioEffectPluginToAudioPluginAdapter::StoreActivePresets", 0,
             [&]
             {
                 storage.storing ? activePresets.Store(storage.item)
                                 : activePresets.Load(storage.item);
                 return 0;
             });
}

void MAudioEffectPluginToAudioPluginAdapter::StoreControllers(const MStorageDescriptor& storage)
{
    MTraced("MAudioEffectPluginToAudioPluginAdapter::StoreControllers",
            [&]
            {
                if (!storage.storing)
                    return controllers.Load(storage.item);
                // Blocks wait for the copy, and not for the text.
                MIDIControllers copy(*this);
                {
                    const MLockGuard processing(GetProcessingLock());
                    copy.assignments = controllers.assignments;
                    copy.noteControllers = controllers.noteControllers;
                }
                copy.Store(storage.item);
            });
}
