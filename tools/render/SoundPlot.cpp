#include "tools/render/SoundPlot.h"

#include <filesystem>

#include "foundation/strings/FileNames.h"
#include "foundation/threads/MException.h"
#include "tools/plot/SoundSheet.h"
#include "tools/render/Failure.h"
#include "tools/render/PeriodFinder.h"
#include "tools/render/RenderOptions.h"
#include "tools/render/Text.h"

SoundPlot::SoundPlot(const RenderOptions& renderOptions, int rate, std::int64_t totalFrames)
    : options(renderOptions),
      analysis(rate, renderOptions.channels, totalFrames,
               {.spectrumWidth = soundsheet::PlotWidth,
                .spectrogramWidth = soundsheet::PlotWidth,
                .spectrogramHeight = soundsheet::SpectrogramHeight})
{
}

std::string SoundPlot::GetTitle() const
{
    const std::string what = options.preset ? *options.preset
                             : options.midi
                                 ? std::filesystem::path(*options.midi).filename().string()
                                 : std::filesystem::path(options.output).filename().string();
    return options.midi && options.preset
               ? what + ", " + std::filesystem::path(*options.midi).filename().string()
               : what;
}

void SoundPlot::Save(const std::string& origin) const
{
    const double seconds = static_cast<double>(analysis.GetFrameCount()) / analysis.GetRate();
    const std::string detail = origin + " \u00B7 " + std::to_string(analysis.GetRate()) +
                               " Hz \u00B7 " + std::to_string(options.channels) +
                               (options.channels == 1 ? " channel \u00B7 " : " channels \u00B7 ") +
                               text::Fixed(seconds, 3) + " s";
    try
    {
        soundsheet::Save(analysis,
                         {.title = MString::FromUTF8(GetTitle()),
                          .detail = MString::FromUTF8(detail),
                          .periodFrames = PeriodFinder().Find(analysis.GetExcerpt(0))},
                         FileNameFromBytes(*options.plot));
    }
    catch (const MException& failure)
    {
        throw Failure("cannot write " + Quoted(*options.plot), failure.text.ToUTF8());
    }
}
