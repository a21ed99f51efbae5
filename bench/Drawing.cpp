// Drawing into memory, beside the least that a fill can cost and two libraries that also draw in
// software: pixman for areas, cairo's image surfaces for shapes. Their pixels carry their alpha in
// the colours, which saves them one multiplication.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <cairo.h>
#include <pixman.h>

#include "bench/Goals.h"
#include "gui/drawing/MBitmap.h"
#include "gui/drawing/MDrawerToMBitmap.h"

namespace
{

constexpr int LineCount = 64;
constexpr int CircleCount = 16;

struct Place
{
    double x, y;
};

/// Where lines end and circles stand, spread all over the area.
std::vector<Place> Places(int count, int width, int height)
{
    std::mt19937 random(7);
    std::vector<Place> places;
    places.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        places.push_back({static_cast<double>(random() % static_cast<unsigned>(width)),
                          static_cast<double>(random() % static_cast<unsigned>(height))});
    return places;
}

/// Half of what the height has room for.
int RadiusFor(int height)
{
    return height / 4;
}

std::vector<MColor> Noise(std::size_t count, bool isPremultiplied)
{
    std::mt19937 random(9);
    std::vector<MColor> pixels(count);
    for (MColor& pixel : pixels)
    {
        pixel = MColor(static_cast<std::uint32_t>(random()));
        const MPixel p = pixel.GetPixel();
        if (isPremultiplied)
            pixel = MColor(p.red * p.alpha / 255, p.green * p.alpha / 255, p.blue * p.alpha / 255,
                           p.alpha);
    }
    return pixels;
}

/// The toolkit.
class Ours
{
public:
    Ours(int targetWidth, int targetHeight)
        : width(targetWidth),
          height(targetHeight),
          target(width, height),
          source(width, height),
          small(width / 2, height / 2),
          lines(Places(LineCount, width, height)),
          circles(Places(CircleCount, width, height))
    {
        Fill(source);
        Fill(small);
        drawer.FillRectangle(0, 0, width, height, MColor(20, 40, 60), MColorOp::Copy);
    }
    Ours(const Ours&) = delete;
    Ours& operator=(const Ours&) = delete;

    void OpaqueFill()
    {
        drawer.FillRectangle(0, 0, width - 1, height - 1, MColor(20, 40, 60), MColorOp::Alphablend);
    }
    void AlphaFill()
    {
        drawer.FillRectangle(0, 0, width - 1, height - 1, MColor(20, 40, 60, 100),
                             MColorOp::Alphablend);
    }
    void AlphaBlit()
    {
        drawer.BitBlt(0, 0, width - 1, height - 1, &source, 0, 0, MColor(0, 0, 0),
                      MColorOp::Alphablend);
    }
    void Stretch()
    {
        drawer.StretchBlt(0, 0, width - 1, height - 1, &small, 0, 0, small.GetWidth() - 1,
                          small.GetHeight() - 1, MColor(0, 0, 0), MColorOp::Alphablend);
    }
    void Lines()
    {
        drawer.MoveTo(0, 0);
        for (const Place& place : lines)
            drawer.LineTo(static_cast<int>(place.x), static_cast<int>(place.y),
                          MColor(200, 100, 50), MColorOp::Alphablend);
    }
    void PreciseLines()
    {
        drawer.MoveToF(0.0, 0.0);
        for (const Place& place : lines)
            drawer.LineToF(place.x, place.y, MColor(200, 100, 50), MColorOp::Alphablend);
    }
    void Circles()
    {
        for (const Place& place : circles)
            drawer.FillCircle(static_cast<int>(place.x), static_cast<int>(place.y),
                              RadiusFor(height), MColor(200, 100, 50), MColorOp::Alphablend);
    }

private:
    static void Fill(MBitmap& bitmap)
    {
        const std::vector<MColor> noise = Noise(static_cast<std::size_t>(bitmap.GetWidth()) *
                                                    static_cast<std::size_t>(bitmap.GetHeight()),
                                                false);
        std::ranges::copy(noise, bitmap.GetRow(0));
    }

    int width;
    int height;
    MBitmap target;
    MBitmap source;
    MBitmap small;
    MDrawerToMBitmap drawer{target};
    std::vector<Place> lines;
    std::vector<Place> circles;
};

/// Setting all bytes of the same memory.
class Memory
{
public:
    Memory(int width, int height)
        : target(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
    {
    }

    void OpaqueFill() { std::memset(target.data(), 0x55, target.size() * sizeof(std::uint32_t)); }

private:
    std::vector<std::uint32_t> target;
};

class Pixman
{
public:
    Pixman(int targetWidth, int targetHeight)
        : width(targetWidth),
          height(targetHeight),
          target(Make(width, height)),
          source(Make(width, height)),
          small(Make(width / 2, height / 2))
    {
        // Corners to corners, as StretchBlt does it.
        pixman_transform_t transform;
        const auto step = [](int from, int to)
        { return pixman_double_to_fixed((from - 1.0) / (to - 1.0)); };
        pixman_transform_init_scale(&transform, step(width / 2, width), step(height / 2, height));
        pixman_image_set_transform(small.image.get(), &transform);
        pixman_image_set_filter(small.image.get(), PIXMAN_FILTER_BILINEAR, nullptr, 0);
        pixman_image_set_repeat(small.image.get(), PIXMAN_REPEAT_PAD);
    }

    void AlphaFill()
    {
        const pixman_color_t colour{20 * 100, 40 * 100, 60 * 100, 100 * 257};
        const pixman_box32_t box{0, 0, width, height};
        pixman_image_fill_boxes(PIXMAN_OP_OVER, target.image.get(), &colour, 1, &box);
    }
    void AlphaBlit() { Compose(source); }
    void Stretch() { Compose(small); }

private:
    struct Release
    {
        void operator()(pixman_image_t* image) const noexcept { pixman_image_unref(image); }
    };
    struct Image
    {
        std::vector<MColor> pixels;
        std::unique_ptr<pixman_image_t, Release> image;
    };

    static Image Make(int imageWidth, int imageHeight)
    {
        Image made;
        made.pixels = Noise(
            static_cast<std::size_t>(imageWidth) * static_cast<std::size_t>(imageHeight), true);
        made.image.reset(pixman_image_create_bits(
            PIXMAN_a8r8g8b8, imageWidth, imageHeight,
            reinterpret_cast<std::uint32_t*>(made.pixels.data()), imageWidth * 4));
        return made;
    }
    void Compose(const Image& from)
    {
        pixman_image_composite32(PIXMAN_OP_OVER, from.image.get(), nullptr, target.image.get(), 0,
                                 0, 0, 0, 0, 0, width, height);
    }

    int width;
    int height;
    Image target;
    Image source;
    Image small;
};

class Cairo
{
public:
    Cairo(int targetWidth, int targetHeight)
        : height(targetHeight),
          surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, targetWidth, targetHeight)),
          context(cairo_create(surface.get())),
          lines(Places(LineCount, targetWidth, targetHeight)),
          circles(Places(CircleCount, targetWidth, targetHeight))
    {
        cairo_set_source_rgb(context.get(), 0.8, 0.4, 0.2);
        cairo_set_line_width(context.get(), 1.0);
    }

    void Lines()
    {
        // One by one: together they would be one outline, whose overlaps count once.
        Place pen{0.0, 0.0};
        for (const Place& place : lines)
        {
            cairo_move_to(context.get(), pen.x + 0.5, pen.y + 0.5);
            cairo_line_to(context.get(), place.x + 0.5, place.y + 0.5);
            cairo_stroke(context.get());
            pen = place;
        }
    }
    void Circles()
    {
        for (const Place& place : circles)
        {
            cairo_arc(context.get(), place.x + 0.5, place.y + 0.5, RadiusFor(height) + 0.5, 0.0,
                      2.0 * std::numbers::pi);
            cairo_fill(context.get());
        }
    }

private:
    struct Release
    {
        void operator()(cairo_surface_t* released) const noexcept
        {
            cairo_surface_destroy(released);
        }
        void operator()(cairo_t* released) const noexcept { cairo_destroy(released); }
    };

    int height;
    std::unique_ptr<cairo_surface_t, Release> surface;
    std::unique_ptr<cairo_t, Release> context;
    std::vector<Place> lines;
    std::vector<Place> circles;
};

template <class Painter, void (Painter::*Paint)()>
void Run(benchmark::State& state)
{
    const auto width = static_cast<int>(state.range(0));
    const auto height = static_cast<int>(state.range(1));
    Painter painter(width, height);
    for (auto _ : state)
    {
        (painter.*Paint)();
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * width * height);
}

/// "Drawing/WHAT/WHO/W/H"
template <class Painter, void (Painter::*Paint)()>
void Register(const std::string& what, const std::string& who)
{
    benchmark::RegisterBenchmark(("Drawing/" + what + "/" + who).c_str(), Run<Painter, Paint>)
        ->Args({450, 100})
        ->Args({1920, 1080});
}

void RegisterGoals(const std::string& what, const std::string& peer, double limit)
{
    const std::string name = "Drawing/" + what + "/";
    for (const std::string size : {"450/100", "1920/1080"})
    {
        std::string goal = what + " beside ";
        goal += peer;
        goal += ", ";
        goal += size;
        std::string ours = name + "ours/";
        ours += size;
        std::string theirs = name + peer;
        theirs += "/";
        theirs += size;
        RegisterGoal({goal, ours, theirs, limit});
    }
}

[[maybe_unused]] const bool isRegistered = []
{
    Register<Ours, &Ours::OpaqueFill>("opaque fill", "ours");
    Register<Memory, &Memory::OpaqueFill>("opaque fill", "memset");
    Register<Ours, &Ours::AlphaFill>("alpha fill", "ours");
    Register<Pixman, &Pixman::AlphaFill>("alpha fill", "pixman");
    Register<Ours, &Ours::AlphaBlit>("alpha blit", "ours");
    Register<Pixman, &Pixman::AlphaBlit>("alpha blit", "pixman");
    Register<Ours, &Ours::Stretch>("stretch", "ours");
    Register<Pixman, &Pixman::Stretch>("stretch", "pixman");
    Register<Ours, &Ours::Lines>("lines", "ours");
    Register<Ours, &Ours::PreciseLines>("precise lines", "ours");
    Register<Cairo, &Cairo::Lines>("lines", "cairo");
    Register<Ours, &Ours::Circles>("filled circles", "ours");
    Register<Cairo, &Cairo::Circles>("filled circles", "cairo");

    // At 0.9 of the speed of memset.
    RegisterGoals("opaque fill", "memset", 1.0 / 0.9);
    RegisterGoals("alpha fill", "pixman", 0.6);
    RegisterGoals("alpha blit", "pixman", 0.6);
    RegisterGoals("stretch", "pixman", 1.0);
    RegisterGoals("lines", "cairo", 0.25);
    RegisterGoals("filled circles", "cairo", 0.35);
    return true;
}();

} // namespace
