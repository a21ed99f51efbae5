// Texts drawn into memory, beside cairo's image surfaces, which keep their glyphs, too.

#include <cstddef>
#include <string>

#include <benchmark/benchmark.h>
#include <cairo-ft.h>

#include "bench/Goals.h"
#include "foundation/modules/MResources.h"
#include "gui/drawing/MBitmap.h"
#include "gui/drawing/MDrawerToMBitmap.h"
#include "gui/text/MFont.h"

namespace
{

constexpr int Width = 450;
constexpr int Height = 100;
constexpr int FontHeight = 14; ///< pixels
constexpr const char* Line = "The quick brown fox jumps over 1,234.56 Hz & -0.5 dB";
constexpr const char* Paragraph =
    "Wrapped text breaks at blanks, before the word that would pass the width of its rectangle. "
    "Controls show a paragraph where a caption says too little, and draw it anew whenever what "
    "lies under it changes.";
constexpr MColor Ink(230, 230, 230);

class Sheet
{
public:
    Sheet() : bitmap(Width, Height), drawer(bitmap)
    {
        drawer.FillRectangle(0, 0, Width, Height, MColor(28, 30, 36), MColorOp::Copy);
    }
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;

    void Draw(const MFont& font, const char* text, int flags)
    {
        drawer.AlignedTextOut(font, 4, 4, Width - 4, Height - 4, text, flags, Ink,
                              MColorOp::Alphablend);
        benchmark::DoNotOptimize(bitmap.GetRow(0));
        benchmark::ClobberMemory();
    }

private:
    MBitmap bitmap;
    MDrawerToMBitmap drawer;
};

void DrawLine(benchmark::State& state)
{
    Sheet sheet;
    const MFont font({.height = FontHeight});
    for (auto _ : state)
        sheet.Draw(font, Line, alignedtext::SingleLine);
}

void DrawParagraph(benchmark::State& state)
{
    Sheet sheet;
    const MFont font({.height = FontHeight});
    for (auto _ : state)
        sheet.Draw(font, Paragraph, alignedtext::Center);
}

void Measure(benchmark::State& state)
{
    const MFont font({.height = FontHeight});
    for (auto _ : state)
        benchmark::DoNotOptimize(font.MeasureRun(Line, 0, INT32_MAX));
}

/// A font that nobody has used before, so that every glyph is rendered.
void DrawFirstLine(benchmark::State& state)
{
    Sheet sheet;
    for (auto _ : state)
        sheet.Draw(MFont({.height = FontHeight}), Line, alignedtext::SingleLine);
}

/// The same face and size, grey and without hints.
class CairoSheet
{
public:
    CairoSheet()
        : bytes(MResources::Open("fonts/Inter-Regular.otf")),
          surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, Width, Height)),
          context(cairo_create(surface))
    {
        SetFont();
    }
    CairoSheet(const CairoSheet&) = delete;
    CairoSheet& operator=(const CairoSheet&) = delete;
    ~CairoSheet()
    {
        cairo_destroy(context);
        cairo_surface_destroy(surface);
        cairo_font_face_destroy(fontFace);
    }

    void Draw()
    {
        cairo_move_to(context, 4.0, 16.0);
        cairo_show_text(context, Line);
        cairo_surface_flush(surface);
        benchmark::DoNotOptimize(cairo_image_surface_get_data(surface));
        benchmark::ClobberMemory();
    }

private:
    void SetFont()
    {
        FT_Init_FreeType(&library);
        FT_New_Memory_Face(library, reinterpret_cast<const FT_Byte*>(bytes.GetData().data()),
                           static_cast<FT_Long>(bytes.GetData().size()), 0, &face);
        fontFace = cairo_ft_font_face_create_for_ft_face(face, FT_LOAD_NO_HINTING);
        cairo_set_font_face(context, fontFace);
        cairo_set_font_size(context, FontHeight * static_cast<double>(face->units_per_EM) /
                                         static_cast<double>(face->ascender - face->descender));
        cairo_font_options_t* const options = cairo_font_options_create();
        cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
        cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
        cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_ON);
        cairo_set_font_options(context, options);
        cairo_font_options_destroy(options);
        cairo_set_source_rgb(context, 0.9, 0.9, 0.9);
    }

    MMemoryStream bytes;
    FT_Library library = nullptr; // cairo keeps faces in a cache of its own, so both stay
    FT_Face face = nullptr;
    cairo_surface_t* surface;
    cairo_t* context;
    cairo_font_face_t* fontFace = nullptr;
};

void DrawCairoLine(benchmark::State& state)
{
    static CairoSheet sheet;
    for (auto _ : state)
        sheet.Draw();
}

[[maybe_unused]] const bool isRegistered = []
{
    benchmark::RegisterBenchmark("Text/Line", &DrawLine);
    benchmark::RegisterBenchmark("Text/Line/Cairo", &DrawCairoLine);
    benchmark::RegisterBenchmark("Text/Paragraph", &DrawParagraph);
    benchmark::RegisterBenchmark("Text/Measure", &Measure);
    benchmark::RegisterBenchmark("Text/FirstLine", &DrawFirstLine);
    RegisterGoal({"a line of text, 450 x 100", "Text/Line", "Text/Line/Cairo", 2.0});
    return true;
}();

} // namespace
