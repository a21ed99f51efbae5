#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "curves/MEnvelope.h"
#include "effect/PresetShapeTables.h"
#include "foundation/strings/MString.h"
#include "foundation/threads/MLock.h"

class MXMLItem;

/// A periodic signal: one cycle as a table, read with linear interpolation.
/// All thought lies in building the table, so that reading is trivial: sources (preset shapes that
/// cross-fade, a step pattern) are mixed and normalised to a peak of 1.
///
/// The fields are the sound; whoever writes one calls Rebuild, nothing rebuilds lazily. Rebuild
/// overwrites the table in place, so audio code that reads it and every rebuild share a lock one
/// level up (the processing lock).
class MSignalGenerator
{
public:
    static constexpr int TableLength = 8192; ///< samples a cycle
    static constexpr int MaxStepCount = 32;

    /// A sine of peak 1. The first one builds the preset shapes.
    MSignalGenerator();
    MSignalGenerator(const MSignalGenerator&) = delete;
    MSignalGenerator& operator=(const MSignalGenerator&) = delete;

    /// The value at @p phase, which is 0.0 or more; 1.0 is one cycle, and further cycles repeat it.
    float Get(double phase) const noexcept;
    /// The cycle, followed by its first sample, so that interpolation needs no wrap.
    std::span<const float, TableLength + 1> GetTable() const noexcept { return Table; }

    /// Makes the table from the fields. Limits Shape to its range. Does not allocate.
    void Rebuild();

    /// Under its owner's item.
    void Store(MXMLItem& item) const;
    /// What is missing keeps its value. Ends in a rebuild.
    void Load(MXMLItem& item);

    static MString GetShapeName(int index) noexcept { return PresetShapeTables::GetName(index); }

    double Rate = 1.0;          ///< the period by which phases wrap, after a rebuild
    double TableScale = 8192.0; ///< samples for one unit of phase, after a rebuild
    float ShapeFraction = 0.0f; ///< how far Shape is on the way to the next preset, after a rebuild
    double Shape = 5.0;         ///< 0.0 to 15.0 in the preset shapes; between two they cross-fade
    double CycleLength = 1.0;
    std::int32_t CycleCount = 1;
    MEnvelope Envelope{0.0, 1.0, -1.0, 1.0};    ///< the free curve
    double EnvelopeDepth = 0.0;                 ///< share of the free curve, 0.0 to 1.0
    std::array<float, MaxStepCount> StepValues; ///< -1.0 to 1.0
    std::int32_t StepItemCount = 8;             ///< steps in use, 1 to MaxStepCount
    double StepDepth = 0.0;                     ///< share of the step pattern, 0.0 to 1.0
    double Smoothness = 0.0;                    ///< 0.0 to 1.0

private:
    using Cycle = std::array<float, TableLength>;

    int SplitShape() noexcept;
    void RenderPresets() noexcept;
    void RenderSteps(Cycle& cycle) const noexcept;
    void RenderSources() noexcept;
    void Normalise() noexcept;

    const PresetShapeTables& presets;
    std::array<float, TableLength + 1> Table{};
    Cycle RenderBuffer{};  ///< the shape on its way
    Cycle ScratchBuffer{}; ///< a second source
    MLock RebuildLock;     ///< keeps two rebuilds apart
};

inline float MSignalGenerator::Get(double phase) const noexcept
{
    const double position = phase * TableLength;
    const auto whole = static_cast<std::int64_t>(position);
    const auto fraction = static_cast<float>(position - static_cast<double>(whole));
    const auto index = static_cast<std::size_t>(whole & (TableLength - 1));
    return Table[index] * (1.0f - fraction) + Table[index + 1] * fraction;
}
