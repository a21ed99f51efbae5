#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "shell/modulators/MModulationCounter.h"
#include "shell/modulators/MModulator.h"
#include "shell/modulators/MModulatorParameterList.h"

class MAudioPlugin;
class MXMLItem;

/// The two modulators of a plugin, whose parameters they move.
/// Blocks and notes come under the processing lock, on the audio thread; see MModulator.
class Modulators
{
public:
    static constexpr std::size_t Count = 2;

    explicit Modulators(MAudioPlugin& modulatedPlugin) noexcept;

    /// Makes their settings parameters of the plugin, behind those that it has already. Once, as
    /// AddAdapter.
    void AddParameters();

    /// For the parameters that the plugin has now. Under the processing lock, not on the audio
    /// thread.
    void InitProcessing(double sampleRate);

    /// Before the pieces of a block. Returns whether any of them runs.
    bool Prepare();
    /// A piece; see MModulator::ProcessBlock.
    void Process(const MAudioPluginTime& transport, const float* const* inputs, int samples,
                 int channels);
    void OnNote(int channel, double velocity, bool on);

    /// Under "LFOs" of @p settings. Without the processing lock; blocks wait for copies alone.
    void Store(MXMLItem& settings) const;
    /// What is missing takes its default. Under the processing lock.
    /// @throws MException (256) as MModulator::Load does, with half of the state
    void Load(MXMLItem& settings);

    MModulator& operator[](std::size_t index) noexcept { return modulators[index]; }

private:
    /// Writes at once, also in the midst of a block in which automation moves the parameter: that
    /// is kept off it.
    class Writer final : public MModulationWriter
    {
    public:
        explicit Writer(MAudioPlugin& writtenPlugin) noexcept : plugin(writtenPlugin) {}

        void SetParameter(int index, double value01) override;
        void SetModulated(int index, bool on) override;
        bool HasAlternate(int index) const override;

    private:
        MAudioPlugin& plugin;
    };

    MAudioPlugin& plugin;
    Writer writer;
    MModulationCounter counter;
    std::array<MModulator, Count> modulators;
    std::vector<MModulatorParameterList> parameters; ///< of each modulator
    std::array<bool, Count> isRunning{};             ///< in the block under way
};
