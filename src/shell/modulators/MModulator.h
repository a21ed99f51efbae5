#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "effect/MSignalGenerator.h"
#include "foundation/threads/MLockGuard.h"
#include "host/MAudioPluginHostSync.h"
#include "shell/modulators/MModulatorEnvelope.h"
#include "shell/modulators/MModulatorFollower.h"
#include "shell/modulators/MModulatorPitch.h"
#include "shell/modulators/MModulatorRandom.h"
#include "shell/modulators/MModulatorSettings.h"
#include "shell/modulators/MModulatorTarget.h"
#include "shell/modulators/MTunedPitchDetector.h"

class MAudioPluginAutomation;
class MModulationCounter;
class MXMLItem;
struct MAudioPluginTime;

/// Moves parameters: computes one value from -1.0 to 1.0 a block, of an LFO or of what it hears,
/// and writes it to its targets, each of which maps it to a range of its own.
///
/// While it runs, its targets are modulated: the user's values stay below what it writes. Blocks
/// and notes come on the audio thread, under the processing lock, and do not allocate. Settings are
/// any thread's; the targets have one lock for all modulators of the process, which may be taken
/// under the processing lock, never the other way round.
class MModulator : public MModulatorSettings
{
public:
    using TargetList = std::vector<MModulatorTarget>; ///< never empty

    // What its parts are stored under.
    static constexpr const char* FollowerKey = "Envelope"; ///< of old
    static constexpr const char* ADSRKey = "MIDIEnvelope";
    static constexpr const char* EnvelopeKey = "AudioEnvelope";
    static constexpr const char* RandomKey = "Random";
    static constexpr const char* PitchKey = "Pitch";
    static constexpr const char* SignalKey = "Signal";

    /// Both outlive it. The counter is shared by the modulators of one plugin.
    MModulator(MModulationCounter& sharedCounter, MLock& pluginProcessingLock);

    /// Guards the targets and their curves.
    static MLock& GetModulatorLock() noexcept;

    /// Starts anew, but for the LFO. Not on the audio thread; under the processing lock.
    void InitProcessing(double newSampleRate);

    /// Before the pieces of a block: takes hold of the targets, or lets them go. Returns whether it
    /// runs; if not, the block needs no ProcessBlock.
    bool Prepare();
    /// Computes the value and writes it, also for 0 samples. @p inputs holds eight pointers a bus
    /// (bus * 8 + channel), @p channels of each in use; those from a null one on do not count.
    void ProcessBlock(const MAudioPluginTime& transport, const float* const* inputs, int samples,
                      int channels);
    /// Every note, on or off; @p channel from 0, @p velocity 0.0 to 1.0.
    void OnNote(int channel, double velocity, bool on);

    /// Writes to @p item, in place of all that it held. Takes the locks one after the other, for
    /// copies alone.
    void Store(MXMLItem& item) const;
    /// What is missing takes its default. Under the processing lock or before processing.
    /// @throws MException (256) as CheckSettingsTree does, with all as it was
    void Load(MXMLItem& item, const MAudioPluginAutomation& plugin);
    /// The state as a text for the clipboard. GUI thread, as Paste. @throws MException as
    /// clipboardtext::Write does
    MString Copy() const;
    /// Takes over what Copy of a modulator made; blocks wait meanwhile. @throws MException (256) as
    /// clipboardtext::Read and Load do, with all as it was
    void Paste(const MString& text, const MAudioPluginAutomation& plugin);
    /// Lets go of the targets without bringing back what they were: they too have been loaded.
    /// Under the processing lock.
    void ForgetClaims();

    /// Calls @p edit with the list, under its lock, which no parameter may be set under. Not on the
    /// audio thread.
    template <typename Edit>
    void EditTargets(Edit&& edit)
    {
        const MLockGuard guard(GetModulatorLock());
        edit(Targets);
        claims.reserve(Targets.size());
    }
    /// @throws MException "There must be at least one parameter for each modulator."
    void RemoveTarget(std::size_t index);

    MSignalGenerator Signal; ///< the LFO's shape; under the processing lock
    MAudioPluginHostSync Sync;
    MModulatorFollower Follower;
    MModulatorEnvelope Envelope;
    MModulatorRandom Random;
    MModulatorPitch Pitch;
    MRelaxed<double> Phase = 0.0; ///< of the LFO, 0.0 to 1.0; written by the audio thread

private:
    /// Brings the phase in step with the song. Returns cycles a sample.
    double FollowClock(const MAudioPluginTime& transport) noexcept;
    double ComputeValue(const MAudioPluginTime& transport, const float* const* inputs, int samples,
                        int channels);
    void WriteTargets(double value);
    /// Makes what is modulated what should be. Under the modulator lock.
    void UpdateClaims(bool isRunning);

    MTunedPitchDetector pitchDetector; ///< of Pitch
    MModulationCounter& counter;
    MLock& processingLock;
    double SampleRate = 44100.0; ///< Hz
    MModulatorMode lastMode = MModulatorMode::Normal;
    TargetList Targets;      ///< under the modulator lock
    std::vector<int> claims; ///< parameters held, one a target, -1 for none; likewise
    MRelaxed<bool> hasClaims = false;
};
