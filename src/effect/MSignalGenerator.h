#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "curves/MEnvelopeComputer.h"
#include "effect/MGaussianSmoother.h"
#include "effect/MSignalGeneratorOperations.h"
#include "effect/MSignalGeneratorSettings.h"
#include "effect/PresetShapeTables.h"
#include "foundation/strings/MString.h"
#include "foundation/threads/MLock.h"

class MXMLItem;

/// A periodic signal: one cycle as a table, read with linear interpolation.
/// All thought lies in building the table, so that reading is trivial: three sources (preset shapes
/// that cross-fade, a free curve, a step pattern) are mixed, reshaped, smoothed and normalised to a
/// peak of 1, before a last curve maps their amplitudes.
///
/// The fields are the sound; whoever writes one calls Rebuild, nothing rebuilds lazily. Rebuild
/// overwrites the table in place, so audio code that reads it and every rebuild share a lock one
/// level up (the processing lock).
class MSignalGenerator : public MSignalGeneratorSettings
{
public:
    static constexpr int TableLength = 8192; ///< samples a cycle

    /// A sine of peak 1. The first one builds the preset shapes.
    MSignalGenerator();
    MSignalGenerator(const MSignalGenerator&) = delete;
    MSignalGenerator& operator=(const MSignalGenerator&) = delete;

    /// The value at @p phase, which is 0.0 or more; 1.0 is one cycle, and further cycles repeat it.
    float Get(double phase) const noexcept;
    /// The cycle, followed by its first sample, so that interpolation needs no wrap.
    std::span<const float, TableLength + 1> GetTable() const noexcept { return Table; }

    /// Makes the table from the fields, all finite whatever they are. Limits Shape to its range.
    /// Allocates only for curves that have grown.
    /// @throws MException "Invalid control point type.", which no loaded curve has
    void Rebuild();

    /// Allocates for the points of the curves alone.
    MSignalGeneratorState GetState() const;
    /// Takes the place of all that is stored, and rebuilds.
    void SetState(MSignalGeneratorState state);
    /// Writes to the item that its owner named, over what stood there.
    void Store(MXMLItem& item) const;
    /// Missing operations and the depth of the curve become 0, all else that is missing keeps its
    /// value. Ends in a rebuild. Throws what MEnvelope::Load throws, with all fields as they were.
    void Load(MXMLItem& item);

    static MString GetShapeName(int index) noexcept { return PresetShapeTables::GetName(index); }

    double Rate = 1.0;          ///< the period by which phases wrap, after a rebuild
    double TableScale = 8192.0; ///< samples for one unit of phase, after a rebuild
    float ShapeFraction = 0.0f; ///< how far Shape is on the way to the next preset, after a rebuild
    double CycleLength = 1.0;
    std::int32_t CycleCount = 1;
    MGaussianSmoother SmoothingFilter; ///< follows Smoothness
    MSignalGeneratorOperations Operations;

private:
    using Cycle = std::array<float, TableLength>;

    int SplitShape() noexcept;
    void RenderPresets(int index) noexcept;
    void RenderCurve(float* cycle);
    void RenderSteps(float* cycle) const noexcept;
    void RenderSources();
    void Smooth() noexcept;
    void Normalise() noexcept;

    const PresetShapeTables& presets;
    MEnvelopeComputer curveComputer; ///< of Envelope
    std::array<float, TableLength + 1> Table{};
    Cycle RenderBuffer{};                              ///< the shape on its way
    std::array<float, TableLength + 1> SourceBuffer{}; ///< what a stage reads while it renders
    Cycle ScratchBuffer{};                             ///< the steps, then what a stage needs
    MLock RebuildLock;                                 ///< keeps two rebuilds apart
};

inline float MSignalGenerator::Get(double phase) const noexcept
{
    const double position = phase * TableLength;
    const auto whole = static_cast<std::int64_t>(position);
    const auto fraction = static_cast<float>(position - static_cast<double>(whole));
    const auto index = static_cast<std::size_t>(whole & (TableLength - 1));
    return Table[index] * (1.0f - fraction) + Table[index + 1] * fraction;
}
