#include "tools/plot/SoundSheet.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "foundation/strings/MStringFormatter.h"
#include "tools/plot/HeatColours.h"
#include "tools/plot/PlotPanel.h"
#include "tools/plot/SoundAnalysis.h"

namespace
{

constexpr MColorOp Blend = MColorOp::Alphablend;

// The layout, pixels.
constexpr int Margin = 40;
constexpr int NumbersWidth = 62; ///< left of the plots
constexpr int RightWidth = 78;   ///< right of them: units, and the scale of colours
constexpr int HeadHeight = 118;
constexpr int CaptionHeight = 40;
constexpr int FootHeight = 62; ///< below a plot: numbers and room
constexpr int WaveHeight = 240;
constexpr int SpectrumHeight = 380;
constexpr int SheetWidth = Margin + NumbersWidth + soundsheet::PlotWidth + RightWidth + Margin;
constexpr int ScaleWidth = 16; ///< of the bar of colours

constexpr double BottomLevel = -140.0; ///< dB, of the spectrum
constexpr double BottomHeat = -110.0;  ///< dB, of the spectrogram
constexpr double ShownCycles = 4.0;
constexpr double ShownSeconds = 0.02; ///< of what has no cycles
constexpr int PlottedLevels = 20;     ///< dB between two lines

MString Numbered(const char* format, double number)
{
    return MStringFormatter(format).Add(number).Result();
}

double Decibels(double power)
{
    return power > 0.0 ? 10.0 * std::log10(power) : -1000.0;
}

class Sheet
{
public:
    Sheet(const SoundAnalysis& analysedSound, const SoundSheetTexts& sheetTexts)
        : sound(analysedSound),
          texts(sheetTexts),
          canvas(SheetWidth,
                 HeadHeight + GetPlotHeight(WaveHeight) + GetPlotHeight(SpectrumHeight) +
                     (sound.HasSpectrogram() ? GetPlotHeight(soundsheet::SpectrogramHeight) : 0))
    {
    }

    void Draw()
    {
        DrawHead();
        DrawWave();
        DrawSpectrum();
        if (sound.HasSpectrogram())
            DrawSpectrogram();
    }
    void Save(const MString& fileName) const { canvas.Save(fileName); }

private:
    static constexpr int GetPlotHeight(int height) { return CaptionHeight + height + FootHeight; }

    /// The next one down the sheet.
    PlotPanel AddPanel(int height)
    {
        const int top = nextTop + CaptionHeight;
        nextTop += GetPlotHeight(height);
        return {canvas, MRectangle{.left = Margin + NumbersWidth,
                                   .top = top,
                                   .right = Margin + NumbersWidth + soundsheet::PlotWidth - 1,
                                   .bottom = top + height - 1}};
    }

    void DrawHead();
    void DrawWave();
    void DrawSpectrum();
    void DrawSpectrogram();
    /// Beside @p area.
    void DrawHeatScale(const MRectangle& area);
    std::vector<PlotPanel::Tick> MakeFrequencyTicks(const LogScale& scale) const;

    const SoundAnalysis& sound;
    const SoundSheetTexts& texts;
    PlotCanvas canvas;
    int nextTop = HeadHeight;
};

void Sheet::DrawHead()
{
    using enum PlotCanvas::Align;
    const int left = Margin + NumbersWidth;
    const int right = left + soundsheet::PlotWidth - 1;
    canvas.Text(left, 46, texts.title, plotstyle::TitleHeight, plotstyle::Ink, Left, true);
    canvas.Text(left, 84, texts.detail, plotstyle::LabelHeight, plotstyle::FaintInk, Left);
    constexpr std::array<const char*, SoundAnalysis::MaxChannels> Names = {"Left", "Right"};
    for (int i = 0; i < sound.GetChannelCount(); ++i)
    {
        const auto level = [](double number) {
            return number > 0.0 ? Numbered("{0;.2} dB", 20.0 * std::log10(number))
                                : MString("silent");
        };
        const MString text =
            MStringFormatter("{0}: peak {1}, RMS {2}")
                .Add(MString(sound.GetChannelCount() > 1 ? Names.at(static_cast<std::size_t>(i))
                                                         : "Mono"))
                .Add(level(sound.GetPeak(i)))
                .Add(level(sound.GetRMS(i)))
                .Result();
        canvas.Text(right, 62 + 22 * i, text, plotstyle::LabelHeight, plotstyle::Channels[i],
                    Right);
    }
}

/// The first sample from which @p wave rises through zero, or 0.
std::size_t FindRise(std::span<const float> wave, std::size_t end)
{
    for (std::size_t i = 1; i < end; ++i)
        if (wave[i - 1] < 0.0f && wave[i] >= 0.0f)
            return i;
    return 0;
}

/// A round number a little above @p peak.
double RoundUp(double peak)
{
    constexpr double Room = 1.05;
    double top = std::ceil(peak * Room);
    for (const double smaller : {1.0, 0.6, 0.4, 0.2, 0.1, 0.05, 0.02, 0.01})
        if (peak * Room <= smaller)
            top = smaller;
    return top;
}

void Sheet::DrawWave()
{
    PlotPanel panel = AddPanel(WaveHeight);
    const MRectangle& area = panel.GetArea();
    const std::span<const float> first = sound.GetExcerpt(0);
    const double frames = static_cast<double>(first.size());
    const bool hasCycles = texts.periodFrames && *texts.periodFrames * (ShownCycles + 1.0) < frames;
    const double shown =
        std::min(hasCycles ? *texts.periodFrames * ShownCycles : ShownSeconds * sound.GetRate(),
                 std::max(1.0, frames - 1.0));
    const std::size_t start =
        FindRise(first, static_cast<std::size_t>(std::max(1.0, frames - 1.0 - std::ceil(shown))));

    double peak = 0.0;
    for (int i = 0; i < sound.GetChannelCount(); ++i)
        for (const float sample : sound.GetExcerpt(i).subspan(start))
            peak = std::max(peak, std::abs(double{sample}));
    const double top = RoundUp(peak);
    const double milliseconds = 1000.0 * shown / sound.GetRate();
    const auto alongX = PlotPanel::MakeTicks(0.0, milliseconds, area.GetWidth(), 140);
    const auto alongY = PlotPanel::MakeTicks(-top, top, area.GetHeight(), 50);
    const double seconds =
        static_cast<double>(sound.GetExcerptStart() + static_cast<std::int64_t>(start)) /
        sound.GetRate();
    panel.DrawCaption(hasCycles ? "Waveform, four cycles" : "Waveform",
                      Numbered("from {0;.3} s on", seconds));
    panel.DrawGrid(alongX, alongY);
    const double zero = (area.top + area.bottom) / 2.0;
    const double scale = area.GetHeight() / 2.0 / top;
    const auto drawWave = [&](int channel)
    {
        const std::span<const float> wave = sound.GetExcerpt(channel).subspan(start);
        const auto place = [&](std::size_t i)
        { return area.left + static_cast<double>(i) / shown * area.GetWidth(); };
        for (std::size_t i = 1; i < wave.size() && static_cast<double>(i - 1) <= shown; ++i)
            canvas.Line(place(i - 1), zero - scale * wave[i - 1], place(i), zero - scale * wave[i],
                        plotstyle::Channels[channel]);
    };
    canvas.DrawWithin(area,
                      [&]
                      {
                          for (int i = sound.GetChannelCount() - 1; i >= 0; --i)
                              drawWave(i);
                      });
    panel.DrawFrame(alongX, alongY, "ms", "");
}

std::vector<PlotPanel::Tick> Sheet::MakeFrequencyTicks(const LogScale& scale) const
{
    struct Named
    {
        double hz;
        const char* name;
    };
    constexpr Named All[] = {{20, "20"},    {50, "50"},    {100, "100"}, {200, "200"},
                             {500, "500"},  {1e3, "1k"},   {2e3, "2k"},  {5e3, "5k"},
                             {1e4, "10k"},  {2e4, "20k"},  {5e4, "50k"}, {1e5, "100k"},
                             {2e5, "200k"}, {5e5, "500k"}, {1e6, "1M"},  {2e6, "2M"}};
    constexpr double LeastDistance = 34.0; // pixels
    std::vector<PlotPanel::Tick> ticks;
    for (const Named& named : All)
    {
        const double pixel = scale.GetPixel(named.hz);
        const bool isRoomy = ticks.empty() || pixel - ticks.back().place >= LeastDistance;
        if (named.hz <= scale.GetHighest() && isRoomy)
            ticks.push_back({pixel, named.name});
    }
    return ticks;
}

void Sheet::DrawSpectrum()
{
    PlotPanel panel = AddPanel(SpectrumHeight);
    const MRectangle& area = panel.GetArea();
    std::vector<std::vector<double>> levels;
    levels.reserve(static_cast<std::size_t>(sound.GetChannelCount()));
    double highest = 0.0;
    for (int i = 0; i < sound.GetChannelCount(); ++i)
    {
        levels.push_back(sound.GetSpectrum(i));
        for (double& level : levels.back())
        {
            level = Decibels(level);
            highest = std::max(highest, level);
        }
    }
    const double top = PlottedLevels * std::ceil((highest - 0.5) / PlottedLevels);
    const double perPixel = (top - BottomLevel) / area.GetHeight();
    const auto alongX = MakeFrequencyTicks(sound.GetSpectrumScale());
    const auto alongY = PlotPanel::MakeTicks(BottomLevel, top, area.GetHeight(),
                                             static_cast<int>(PlottedLevels / perPixel));
    panel.DrawCaption("Spectrum", "mean power; a sine at full scale has 0 dB");
    panel.DrawGrid(alongX, alongY);

    const auto place = [&](double level)
    { return area.bottom - (std::max(level, BottomLevel - 10.0) - BottomLevel) / perPixel; };
    const auto drawLine = [&](int channel)
    {
        const std::vector<double>& line = levels[static_cast<std::size_t>(channel)];
        for (std::size_t i = 1; i < line.size(); ++i)
        {
            const int x = area.left + static_cast<int>(i);
            const double y = place(line[i]);
            if (channel == 0)
                canvas.GetDrawer().FillRectangle(x, static_cast<int>(y), x, area.bottom,
                                                 plotstyle::Fill, Blend);
            canvas.Line(x - 1, place(line[i - 1]), x, y, plotstyle::Channels[channel]);
        }
    };
    canvas.DrawWithin(area,
                      [&]
                      {
                          for (int i = sound.GetChannelCount() - 1; i >= 0; --i)
                              drawLine(i);
                      });
    panel.DrawFrame(alongX, alongY, "Hz", "dB");
}

void Sheet::DrawSpectrogram()
{
    PlotPanel panel = AddPanel(soundsheet::SpectrogramHeight);
    const MRectangle& area = panel.GetArea();
    MDrawer& drawer = canvas.GetDrawer();
    for (int x = 0; x < area.GetWidth(); ++x)
    {
        const std::span<const double> column = sound.GetColumn(x);
        for (int y = 0; y < area.GetHeight(); ++y)
            drawer.SetPixel(
                area.left + x, area.bottom - y,
                heatcolours::Get(1.0 - Decibels(column[static_cast<std::size_t>(y)]) / BottomHeat));
    }
    const double seconds = static_cast<double>(sound.GetFrameCount()) / sound.GetRate();
    panel.DrawCaption("Spectrogram",
                      sound.GetChannelCount() > 1 ? "of the left channel" : MString());
    panel.DrawFrame(PlotPanel::MakeTicks(0.0, seconds, area.GetWidth(), 140),
                    MakeFrequencyTicks(sound.GetSpectrogramScale()), "s", "Hz");
    DrawHeatScale(area);
}

void Sheet::DrawHeatScale(const MRectangle& area)
{
    const int left = area.right + 14;
    MDrawer& drawer = canvas.GetDrawer();
    for (int y = 0; y < area.GetHeight(); ++y)
    {
        const MColor colour = heatcolours::Get(static_cast<double>(y) / (area.GetHeight() - 1));
        drawer.FillRectangle(left, area.bottom - y, left + ScaleWidth, area.bottom - y, colour,
                             MColorOp::Copy);
    }
    for (int level = 0; level >= BottomHeat; level -= PlottedLevels)
    {
        const double y = area.top + level / BottomHeat * (area.GetHeight() - 1);
        canvas.Text(left + ScaleWidth + 8, static_cast<int>(y), MString::FromInteger(level),
                    plotstyle::LabelHeight, plotstyle::FaintInk, PlotCanvas::Align::Left);
    }
    canvas.Text(left, area.top - 20, "dB", plotstyle::LabelHeight, plotstyle::FaintInk,
                PlotCanvas::Align::Left);
}

} // namespace

void soundsheet::Save(const SoundAnalysis& sound, const SoundSheetTexts& texts,
                      const MString& fileName)
{
    Sheet sheet(sound, texts);
    sheet.Draw();
    sheet.Save(fileName);
}
