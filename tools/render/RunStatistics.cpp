#include "tools/render/RunStatistics.h"

#include <algorithm>
#include <ostream>
#include <string>

#include "shell/MAudioPluginPipeline.h"
#include "tools/render/Text.h"

namespace
{

std::string SizeRange(int shortest, int longest)
{
    std::string range = std::to_string(shortest);
    if (shortest < longest)
        range += " to " + std::to_string(longest);
    return range + (longest == 1 ? " sample" : " samples");
}

} // namespace

void RunStatistics::Count(int samples) noexcept
{
    shortest = blocks == 0 ? samples : std::min(shortest, samples);
    longest = std::max(longest, samples);
    ++blocks;
}

void RunStatistics::Print(std::ostream& stream, const MAudioPluginPipeline& plugin) const
{
    const MAudioPluginPipeline::Statistics& made = plugin.GetStatistics();
    stream << "Blocks: " << blocks << " of " << SizeRange(shortest, longest) << '\n';
    stream << "Sub-blocks: " << made.subBlocks << " of "
           << SizeRange(made.shortestSubBlock, made.longestSubBlock) << '\n';
    stream << "Interpolated blocks: " << made.interpolatedBlocks << '\n';
    stream << "Suspended blocks: " << made.suspendedBlocks << '\n';

    const int latency = plugin.GetEffectiveLatency();
    const int factor = plugin.GetUpsamplingFactor();
    stream << "Latency: " << latency << " samples, "
           << text::Fixed(1000.0 * latency / plugin.GetHostSampleRate(), 3) << " ms\n";
    stream << "Upsampling: " << factor << ", to " << plugin.GetSampleRate() << " Hz";
    if (factor > 1)
        stream << (plugin.IsHighQualityUpsampling() ? " in high quality" : " in standard quality");
    stream << '\n';
}
