#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "curves/MEnvelope.h"

class MXMLItem;

/// What of MSignalGeneratorOperations is stored: see there.
struct MSignalGeneratorOperationsSettings
{
    static constexpr std::size_t HarmonicCount = 7; ///< harmonics 2 to 8

    MSignalGeneratorOperationsSettings();

    /// Zeros and disabled switches are left out, and removed where they stood.
    void Store(MXMLItem& item) const;
    /// What is missing becomes 0 or disabled; missing curves stay. Throws what MEnvelope::Load
    /// throws, and then leaves a part of the new state.
    void Load(MXMLItem& item);

    double Skew = 0.0;                                 ///< -1.0 to 1.0, bend with both ends alike
    double FullSkew = 0.0;                             ///< -1.0 to 1.0, bend to one end
    double Halve = 0.0;                                ///< -1.0 to 1.0, moves the middle
    std::array<double, HarmonicCount> Harmonic{};      ///< -1.0 to 1.0, gains of faster copies
    std::array<double, HarmonicCount> HarmonicPhase{}; ///< 0.0 to 1.0, in cycles of the shape
    bool TransformEnable = false;
    bool AmplitudeTransformEnable = false;
    MEnvelope Transform{0.0, 1.0, 0.0, 1.0};            ///< from the place to the place read there
    MEnvelope AmplitudeTransform{-1.0, 1.0, -1.0, 1.0}; ///< from amplitude to amplitude
};

/// What of MSignalGenerator is stored, but for its operations.
struct MSignalGeneratorSettings
{
    static constexpr int MaxStepCount = 32;

    /// A sine, a curve like it, and two alternating steps.
    MSignalGeneratorSettings();

    /// Writes to the item that its owner named, over what stood there.
    void Store(MXMLItem& item) const;
    /// The depth of the curve becomes 0 if it is missing, all else keeps its value. Throws what
    /// MEnvelope::Load throws, and then leaves a part of the new state.
    void Load(MXMLItem& item);
    /// StepItemCount within its range.
    int CountSteps() const noexcept;

    double Shape = 5.0; ///< 0.0 to 15.0 in the preset shapes; between two they cross-fade
    MEnvelope Envelope{0.0, 1.0, -1.0, 1.0};    ///< the free curve
    double EnvelopeDepth = 0.0;                 ///< share of the free curve, 0.0 to 1.0
    std::array<float, MaxStepCount> StepValues; ///< -1.0 to 1.0
    std::int32_t StepItemCount = 8;             ///< steps in use, 1 to MaxStepCount
    double StepDepth = 0.0;                     ///< share of the step pattern, 0.0 to 1.0
    double Smoothness = 0.0;                    ///< 0.0 to 1.0

private:
    void StoreSteps(MXMLItem& steps) const;
    void LoadSteps(MXMLItem& steps);
};

/// The sound of a generator without its tables: a copy to be taken quickly, under a lock, and made
/// into text at leisure.
struct MSignalGeneratorState
{
    void Store(MXMLItem& item) const;
    /// See the parts.
    void Load(MXMLItem& item);

    MSignalGeneratorSettings settings;
    MSignalGeneratorOperationsSettings operations;
};
