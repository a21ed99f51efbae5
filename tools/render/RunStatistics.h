#pragma once

#include <cstdint>
#include <iosfwd>

class MAudioPluginPipeline;

/// Counts how a plugin is run, block by block.
class RunStatistics
{
public:
    /// Before @p plugin makes a block of @p samples.
    void Count(const MAudioPluginPipeline& plugin, int samples) noexcept;

    /// The counts, and what @p plugin tells of itself.
    void Print(std::ostream& stream, const MAudioPluginPipeline& plugin) const;

private:
    std::int64_t blocks = 0;
    std::int64_t suspendedBlocks = 0;
    int shortest = 0; ///< samples
    int longest = 0;
};
