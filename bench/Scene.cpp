// A whole small editor, 450 x 100 pixels: what one repaint of it takes.

#include <array>
#include <cmath>
#include <numbers>

#include <benchmark/benchmark.h>

#include "gui/drawing/MBitmap.h"
#include "gui/drawing/MDrawerToMBitmap.h"
#include "gui/text/MFont.h"

namespace
{

constexpr int Width = 450; // pixels
constexpr int Height = 100;
constexpr int KnobCount = 6;
constexpr int Radius = 22;
constexpr MColorOp Blend = MColorOp::Alphablend;
constexpr MColor Ink(30, 36, 44);
constexpr MColor Accent(24, 104, 178);

constexpr std::array<const char*, KnobCount> Names = {"Dry",       "Wet",   "Octaves",
                                                      "Semitones", "Width", "Frequency"};

void DrawKnob(MDrawer& drawer, const MFont& font, int index)
{
    using namespace alignedtext;
    const int x = Width / KnobCount * index + Width / KnobCount / 2;
    const int y = 44;
    drawer.FillCircle(x, y, Radius, MColor(236, 239, 243), Blend);
    drawer.Circle(x, y, Radius, Ink, Blend);
    const double angle = (0.75 + 0.25 * index) * std::numbers::pi;
    drawer.MoveToF(x, y);
    drawer.LineToF(x + Radius * std::cos(angle), y + Radius * std::sin(angle), Accent, Blend);
    drawer.AlignedTextOut(font, x - 36, 2, x + 36, 18, Names.at(static_cast<std::size_t>(index)),
                          Center | VCenter | SingleLine, Ink, Blend);
    drawer.AlignedTextOut(font, x - 36, 72, x + 36, 90, "-12.00 dB", Center | VCenter | SingleLine,
                          Ink, Blend);
}

void DrawScene(benchmark::State& state)
{
    MBitmap bitmap(Width, Height);
    MDrawerToMBitmap drawer(bitmap);
    const MFont font({.height = 14});
    for (auto _ : state)
    {
        drawer.FillRectangleGradient(0, 0, Width - 1, Height - 1, MColor(250, 250, 252),
                                     MColor(214, 219, 226), 0, Blend);
        drawer.RoundRectangle(1, 1, Width - 2, Height - 2, 8, Ink, Blend);
        for (int knob = 0; knob < KnobCount; ++knob)
            DrawKnob(drawer, font, knob);
        benchmark::ClobberMemory();
    }
}

BENCHMARK(DrawScene)->Name("Scene/450x100")->Unit(benchmark::kMicrosecond);

} // namespace
