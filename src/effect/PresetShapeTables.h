#pragma once

#include <array>
#include <cstddef>

/// The sixteen preset waveforms, one cycle each: read-only, one set for the process (512 KiB).
class PresetShapeTables
{
public:
    static constexpr int Count = 16;
    static constexpr std::size_t CycleLength = 8192; ///< samples
    using Cycle = std::array<float, CycleLength>;

    /// Built by the first call, which belongs before the first block: it allocates and takes
    /// milliseconds.
    static const PresetShapeTables& Get();

    /// @p index is 0 to Count - 1.
    const Cycle& operator[](int index) const noexcept
    {
        return tables[static_cast<std::size_t>(index)];
    }

    /// "Exponencial" to "Mess"; empty outside 0 to Count - 1.
    static const char* GetName(int index) noexcept;

private:
    PresetShapeTables();

    std::array<Cycle, Count> tables;
};
