#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "shell/modulators/MBandPass.h"
#include "shell/modulators/MModulatorProjection.h"
#include "shell/modulators/MOnePole.h"
#include "shell/modulators/ModulatorNumbers.h"

class MXMLItem;
struct MModulatorParameter;

/// How the input's level becomes the state. Stored by name.
enum class MFollowerMode : std::int32_t
{
    Linear = 0,
    Squared = 1,
    Logarithmic = 2,
};

/// What of MModulatorFollower is stored. Any thread writes the fields.
struct MModulatorFollowerSettings : MModulatorProjection
{
    /// Writes all of them to @p item.
    void Store(MXMLItem& item) const;
    /// What is missing takes its default.
    void Load(MXMLItem& item);
    /// Adds what can be automated, under keys of @p group.
    void Publish(std::vector<MModulatorParameter>& parameters, const char* group);

    MRelaxed<double> LevelMin = -50.0;              ///< dB, -120 to 0
    MRelaxed<double> LevelMax = 0.0;                ///< dB, -120 to 0
    MRelaxed<double> Attack = 0.01;                 ///< seconds, 0 to 1
    MRelaxed<double> Release = 0.1;                 ///< seconds, 0 to 1
    MRelaxed<double> Threshold = 0.025;             ///< of the squares of all channels, 0.0 to 1.0
    MRelaxed<double> BandPassMin = MinLogFrequency; ///< log10 of Hz; both at their ends: no filter
    MRelaxed<double> BandPassMax = MaxLogFrequency;
    MRelaxed<double> BandPassQ = 0.707107; ///< 0.05 to 10
    MRelaxed<bool> Maximize = false;       ///< what reaches Threshold counts as full level
    /// A number of MFollowerMode.
    MRelaxed<std::int32_t> FollowerMode = static_cast<std::int32_t>(MFollowerMode::Logarithmic);
};

/// Follows the level of the input: its power over 10 ms, smoothed by an attack and a release.
/// Owned by a modulator; audio thread, under the processing lock. Does not allocate.
class MModulatorFollower : public MModulatorFollowerSettings
{
public:
    /// Forgets all input, for @p newRate in Hz.
    void Reset(double newRate) noexcept;

    /// Takes @p samples of the first @p channels blocks, none of them null; without channels the
    /// level stays. Returns the state, 0.0 to 1.0.
    double Process(const float* const* inputs, int samples, std::size_t channels) noexcept;

    /// The level as an amplitude, from Process.
    double GetValue() const noexcept { return Value; }

private:
    static constexpr int ChunkSamples = 64;

    void ProcessChunk(const float* const* inputs, int offset, int samples, std::size_t channels,
                      bool isFiltered) noexcept;
    void FollowPower(const double* power, int samples) noexcept;
    double MapLevel() noexcept;

    double rate = 44100.0; ///< Hz
    double Value = 0.0;
    double meanSquare = 0.0;
    MBandPass bandPass;
    // Of the block under way:
    double meanShare = 0.0;
    double attackShare = 0.0;
    double releaseShare = 0.0;
    MOnePole mean;
    MOnePole attack;
    MOnePole release;
};
