#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "tools/plot/SoundAnalysis.h"

struct RenderOptions;

/// The picture of a sound that --plot asks for.
class SoundPlot
{
public:
    /// Of @p totalFrames frames to come; the options outlive it.
    SoundPlot(const RenderOptions& renderOptions, int rate, std::int64_t totalFrames);

    void Feed(std::span<const std::vector<float>> outputs, int frames)
    {
        analysis.Feed(outputs, frames);
    }
    /// Behind the last frame; @p origin is what ran. @throws MException naming the file if it
    /// cannot be written
    void Save(const std::string& origin) const;

private:
    std::string GetTitle() const;

    const RenderOptions& options;
    SoundAnalysis analysis;
};
