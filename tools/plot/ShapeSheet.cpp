#include "tools/plot/ShapeSheet.h"

#include <algorithm>
#include <memory>

#include "effect/MSignalGenerator.h"
#include "foundation/values/ValueTexts.h"
#include "tools/plot/PlotCanvas.h"

namespace
{

using Generator = MSignalGenerator;

constexpr MColorOp Blend = MColorOp::Alphablend;

// The layout, pixels.
constexpr int Columns = 4;
constexpr int CellWidth = 350;
constexpr int CellHeight = 150;
constexpr int CellGap = 26;
constexpr int NameHeight = 30; ///< above each cell
constexpr int Margin = 40;
constexpr int HeadHeight = 92;
constexpr int HeadlineHeight = 52; ///< above each group of cells

constexpr double Sine = 5.0; ///< in the preset shapes
constexpr double Saw = 12.0;

/// A cycle by its name, made from a sine as it is by default.
struct Example
{
    const char* name;
    void (*make)(Generator& generator);
};

void MakeSteps(Generator& generator)
{
    constexpr float Steps[] = {0.2f, 0.9f, -0.4f, 0.5f, -0.9f, -0.1f, 0.7f, -0.6f};
    std::ranges::copy(Steps, generator.StepValues.begin());
    generator.StepDepth = 1.0;
}

void MakeCurve(Generator& generator)
{
    generator.EnvelopeDepth = 1.0;
    generator.Envelope.Clear();
    generator.Envelope.AddEndPoints(-0.6, -0.6);
    constexpr std::pair<double, double> Points[] = {
        {0.15, 0.9}, {0.35, 0.1}, {0.5, 0.6}, {0.7, -0.9}};
    std::size_t place = 1;
    for (const auto& [x, y] : Points)
    {
        MEnvelopePoint point;
        point.X = x;
        point.Y = y;
        point.Type = MEnvelopePoint::ControlType::Smooth1;
        generator.Envelope.Insert(place++, point);
    }
}

constexpr Example Examples[] = {
    {"Half way from Sine to Harmonics", [](Generator& g) { g.Shape = Sine + 0.5; }},
    {"Skew 60%", [](Generator& g) { g.Operations.Skew = 0.6; }},
    {"Full skew 60%", [](Generator& g) { g.Operations.FullSkew = 0.6; }},
    {"Middle moved by 50%", [](Generator& g) { g.Operations.Halve = 0.5; }},
    {"Third and fifth harmonic",
     [](Generator& g)
     {
         g.Operations.Harmonic[1] = 0.5;
         g.Operations.Harmonic[3] = 0.3;
     }},
    {"Harmonics 2 to 8",
     [](Generator& g)
     {
         for (std::size_t i = 0; i < g.Operations.Harmonic.size(); ++i)
             g.Operations.Harmonic[i] = 1.0 / static_cast<double>(i + 2);
     }},
    {"Saw, smoothness 50%",
     [](Generator& g)
     {
         g.Shape = Saw;
         g.Smoothness = 0.5;
     }},
    {"Map of time",
     [](Generator& g)
     {
         g.Operations.TransformEnable = true;
         g.Operations.Transform.Clear();
         g.Operations.Transform.AddEndPoints(1.0, 0.0);
     }},
    {"Map of amplitudes",
     [](Generator& g)
     {
         g.Operations.AmplitudeTransformEnable = true;
         g.Operations.AmplitudeTransform.Clear();
         g.Operations.AmplitudeTransform.AddEndPoints(-1.0, 0.3);
     }},
    {"Free curve", &MakeCurve},
    {"Eight steps", &MakeSteps},
    {"Steps, smoothness 40%",
     [](Generator& g)
     {
         MakeSteps(g);
         g.Smoothness = 0.4;
     }},
};

constexpr int ShapeRows = (valuetexts::ShapeCount + Columns - 1) / Columns;
constexpr int ExampleRows = (static_cast<int>(std::size(Examples)) + Columns - 1) / Columns;
constexpr int RowHeight = NameHeight + CellHeight + CellGap;
constexpr int SheetWidth = 2 * Margin + Columns * CellWidth + (Columns - 1) * CellGap;
constexpr int SheetHeight =
    HeadHeight + 2 * HeadlineHeight + (ShapeRows + ExampleRows) * RowHeight + Margin - CellGap;

class Sheet
{
public:
    void Draw()
    {
        canvas.Text(Margin, 46, "Tonvale: one cycle", plotstyle::TitleHeight, plotstyle::Ink,
                    PlotCanvas::Align::Left, true);
        DrawHeadline("Preset shapes");
        for (int i = 0; i < valuetexts::ShapeCount; ++i)
        {
            const auto generator = std::make_unique<Generator>();
            generator->Shape = i;
            DrawCell(i, Generator::GetShapeName(i), *generator);
        }
        top += ShapeRows * RowHeight;
        DrawHeadline("What becomes of a sine, where nothing else is said");
        int place = 0;
        for (const Example& example : Examples)
        {
            const auto generator = std::make_unique<Generator>();
            example.make(*generator);
            DrawCell(place++, example.name, *generator);
        }
    }
    void Save(const MString& fileName) const { canvas.Save(fileName); }

private:
    void DrawHeadline(const MString& text)
    {
        canvas.Text(Margin, top + HeadlineHeight / 2, text, plotstyle::CaptionHeight,
                    plotstyle::FaintInk, PlotCanvas::Align::Left);
        top += HeadlineHeight;
    }
    /// The cycle behind a rebuild, as the cell @p place of the group.
    void DrawCell(int place, const MString& name, Generator& generator);

    PlotCanvas canvas{SheetWidth, SheetHeight};
    int top = HeadHeight;
};

void Sheet::DrawCell(int place, const MString& name, Generator& generator)
{
    generator.Rebuild();
    const int left = Margin + place % Columns * (CellWidth + CellGap);
    const int y = top + place / Columns * RowHeight;
    canvas.Text(left, y + NameHeight / 2, name, plotstyle::LabelHeight, plotstyle::Ink,
                PlotCanvas::Align::Left);
    const MRectangle cell{left, y + NameHeight, left + CellWidth - 1,
                          y + NameHeight + CellHeight - 1};
    MDrawer& drawer = canvas.GetDrawer();
    const int middle = (cell.top + cell.bottom) / 2;
    drawer.FillRectangle(cell.left, middle, cell.right, middle, plotstyle::Grid, Blend);
    drawer.FillRectangle(left + CellWidth / 2, cell.top, left + CellWidth / 2, cell.bottom,
                         plotstyle::Grid, Blend);

    constexpr int Inset = 8; ///< between a peak of 1 and the frame
    constexpr double Scale = CellHeight / 2.0 - Inset;
    const auto table = generator.GetTable();
    const auto height = [&](std::size_t sample) { return middle - Scale * table[sample]; };
    double before = height(0);
    for (int x = 1; x < CellWidth; ++x)
    {
        const auto sample = static_cast<std::size_t>(x) * (table.size() - 1) / (CellWidth - 1);
        canvas.Line(left + x - 1, before, left + x, height(sample), plotstyle::Channels[0]);
        before = height(sample);
    }
    drawer.Rectangle(cell.left, cell.top, cell.right, cell.bottom, plotstyle::Frame, Blend);
}

} // namespace

void shapesheet::Save(const MString& fileName)
{
    Sheet sheet;
    sheet.Draw();
    sheet.Save(fileName);
}
