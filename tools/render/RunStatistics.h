#pragma once

#include <cstdint>
#include <iosfwd>

class MAudioPluginPipeline;

/// Counts the blocks that a plugin is asked for, and tells what it made of them.
class RunStatistics
{
public:
    /// For each block that is asked for.
    void Count(int samples) noexcept;

    /// The counts, and what @p plugin tells of itself.
    void Print(std::ostream& stream, const MAudioPluginPipeline& plugin) const;

private:
    std::int64_t blocks = 0;
    int shortest = 0; ///< samples
    int longest = 0;
};
