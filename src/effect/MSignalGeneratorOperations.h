#pragma once

#include <cstddef>
#include <span>

#include "curves/MEnvelopeComputer.h"
#include "dsp/kernels/Cycles.h"
#include "effect/MSignalGeneratorSettings.h"

/// What a cycle passes between the mix of its sources and the smoothing, in the order of the
/// fields, and the map of amplitudes at the end of all.
/// The fields are taken as they are, in their ranges or not: positions end at the last sample of
/// the cycle, so nothing outside of it is ever read. A stage without an amount costs nothing.
/// Owned by one MSignalGenerator and used under its RebuildLock, also on the audio thread: only
/// curves that have grown allocate.
class MSignalGeneratorOperations : public MSignalGeneratorOperationsSettings
{
public:
    static constexpr std::size_t CycleLength = kernels::CycleLength; ///< samples
    using Cycle = std::span<float, CycleLength>;

    /// Where the operations work; nothing of it lasts but the result.
    struct Buffers
    {
        Cycle render; ///< the cycle, and what becomes of it
        /// The stage before; its last sample stands for the position behind the cycle.
        std::span<float, CycleLength + 1> source;
        Cycle scratch; ///< a map or an intermediate cycle
    };

    /// Skew to Transform. Samples may come out infinite or as not numbers if amounts are huge.
    /// @throws MException "Invalid control point type.", which no loaded curve has
    void Process(const Buffers& buffers);
    /// AmplitudeTransform, on a finished @p cycle. Throws what Process throws.
    void ProcessAmplitude(Cycle cycle);

private:
    void ProcessSkew(const Buffers& buffers) const noexcept;
    void ProcessFullSkew(const Buffers& buffers) const noexcept;
    void ProcessHalve(const Buffers& buffers) const noexcept;
    void ProcessHarmonics(const Buffers& buffers) const noexcept;
    void ProcessTransform(const Buffers& buffers);

    MEnvelopeComputer transformComputer;
    MEnvelopeComputer amplitudeComputer;
};
