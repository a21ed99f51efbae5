#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "curves/MADSR.h"
#include "shell/modulators/MModulatorProjection.h"
#include "shell/modulators/MOnePole.h"

class MLock;
class MXMLItem;
struct MModulatorParameter;

/// What starts and ends the envelope. Stored by name.
enum class MLFOEnvelopeMode : std::int32_t
{
    MIDI = 0,
    Audio = 1,
};

/// What of MModulatorEnvelope is stored, but for the envelope itself. Any thread writes the fields.
struct MModulatorEnvelopeSettings : MModulatorProjection
{
    void Store(MXMLItem& item) const;
    /// What is missing takes its default.
    void Load(MXMLItem& item);
    /// Adds what can be automated, under keys of @p group.
    void Publish(std::vector<MModulatorParameter>& parameters, const char* group);

    MRelaxed<double> ThresholdOn = 0.5; ///< mean squares of all channels, 0.0 to 1.0
    MRelaxed<double> ThresholdOff = 0.25;
    MRelaxed<double> RMSLength = 0.01; ///< seconds, 0 to 0.1
    /// A number of MLFOEnvelopeMode.
    MRelaxed<std::int32_t> EnvelopeSource = static_cast<std::int32_t>(MLFOEnvelopeMode::MIDI);
};

/// An envelope that held notes or a loud input open.
/// Owned by a modulator; audio thread, under the processing lock. Does not allocate.
class MModulatorEnvelope : public MModulatorEnvelopeSettings
{
public:
    /// @p processingLock outlives it; null for none.
    explicit MModulatorEnvelope(MLock* processingLock = nullptr) : ADSR(processingLock) {}

    /// Silent until the next note; rebuilds the envelope for @p newRate in Hz.
    void Reset(double newRate);

    /// Counts the notes that are held, in every mode; the envelope starts if @p isRunning.
    void OnNote(bool on, bool isRunning);
    /// Takes @p samples of the first @p channels blocks, none of them null. Returns the state, 0.0
    /// to 1.0, at the start of the block.
    double Process(const float* const* inputs, int samples, std::size_t channels);

    MADSR ADSR; ///< under the processing lock

private:
    void FollowSource() noexcept;
    void ScanGate(const float* const* inputs, int samples, std::size_t channels);

    MADSRState state;
    std::int32_t GateCount = 0; ///< held notes, or 1 while the input is loud
    std::int32_t gateSource = static_cast<std::int32_t>(MLFOEnvelopeMode::MIDI); ///< who counted
    double rate = 44100.0;                                                       ///< Hz
    double meanSquare = 0.0;
    MOnePole mean;
};
