#include "tools/render/RunStatistics.h"

#include <algorithm>
#include <ostream>

#include "shell/MAudioPluginPipeline.h"
#include "tools/render/Text.h"

void RunStatistics::Count(const MAudioPluginPipeline& plugin, int samples) noexcept
{
    shortest = blocks == 0 ? samples : std::min(shortest, samples);
    longest = std::max(longest, samples);
    ++blocks;
    if (plugin.IsSuspended())
        ++suspendedBlocks;
}

void RunStatistics::Print(std::ostream& stream, const MAudioPluginPipeline& plugin) const
{
    stream << "Blocks: " << blocks << " of " << shortest;
    if (shortest < longest)
        stream << " to " << longest;
    stream << (longest == 1 ? " sample\n" : " samples\n");
    stream << "Suspended blocks: " << suspendedBlocks << '\n';

    const int latency = plugin.GetEffectiveLatency();
    const int factor = plugin.GetUpsamplingFactor();
    stream << "Latency: " << latency << " samples, "
           << text::Fixed(1000.0 * latency / plugin.GetHostSampleRate(), 3) << " ms\n";
    stream << "Upsampling: " << factor << ", to " << plugin.GetSampleRate() << " Hz";
    if (factor > 1)
        stream << (plugin.IsHighQualityUpsampling() ? " in high quality" : " in standard quality");
    stream << '\n';
}
