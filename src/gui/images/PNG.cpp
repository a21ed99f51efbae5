#include "gui/images/PNG.h"

#include <array>
#include <cstring>
#include <exception>
#include <utility>

#include <csetjmp>
#include <png.h>

#include "foundation/limits.h"
#include "foundation/streams/MStream.h"
#include "foundation/threads/MException.h"
#include "gui/drawing/MBitmap.h"

namespace
{

constexpr int CompressionLevel = 9;
constexpr std::size_t ChunkBytes = 1 << 20; ///< of one chunk beside the pixels

/// One file that libpng reads or writes. libpng leaves a failed call by a jump, which ends no C++
/// object: what it calls and what calls it directly owns nothing, and the stream's exceptions wait
/// here until libpng is left.
class PNGFile
{
public:
    PNGFile(const PNGFile&) = delete;
    PNGFile& operator=(const PNGFile&) = delete;

protected:
    explicit PNGFile(MStream& fileStream) : stream(fileStream) {}
    ~PNGFile() = default;

    /// Takes over the structures; @p newPNG may be null.
    void Prepare(png_structp newPNG)
    {
        png = newPNG;
        if (png == nullptr)
            throw MException("Could not initialize libpng.", MException::SetUpFailure);
        info = png_create_info_struct(png);
        if (info == nullptr)
            throw MException("Could not initialize libpng info structure.",
                             MException::SetUpFailure);
    }

    /// Runs @p step, which calls libpng and owns nothing.
    /// @throws what the stream threw meanwhile, or MException with @p message and @p code
    template <typename Step>
    void Run(Step step, const char* message, std::int32_t code)
    {
        if (Try(step))
            return;
        if (streamFailure)
            std::rethrow_exception(streamFailure);
        throw MException(isPaletteBroken ? "Error loading PNG palette." : message, code);
    }

    static void OnError(png_structp png, png_const_charp message)
    {
        constexpr const char* PaletteChunk = "PLTE";
        auto& file = *static_cast<PNGFile*>(png_get_error_ptr(png));
        file.isPaletteBroken = std::strncmp(message, PaletteChunk, std::strlen(PaletteChunk)) == 0;
        png_longjmp(png, 1);
    }
    static void OnWarning(png_structp /*png*/, png_const_charp /*message*/) {}

    /// For the callbacks: whether @p use of the stream went well.
    template <typename Use>
    static bool UseStream(png_structp png, Use use) noexcept
    {
        auto& file = *static_cast<PNGFile*>(png_get_io_ptr(png));
        try
        {
            return use(file.stream);
        }
        catch (...)
        {
            file.streamFailure = std::current_exception();
            return false;
        }
    }

    png_structp png = nullptr;
    png_infop info = nullptr;

private:
    template <typename Step>
    bool Try(Step& step)
    {
        if (setjmp(png_jmpbuf(png)) != 0) // NOLINT(cert-err52-cpp): the way of libpng
            return false;
        step();
        return true;
    }

    MStream& stream;
    std::exception_ptr streamFailure;
    bool isPaletteBroken = false;
};

class PNGReader : private PNGFile
{
public:
    explicit PNGReader(MStream& fileStream) : PNGFile(fileStream)
    {
        Prepare(png_create_read_struct(PNG_LIBPNG_VER_STRING, static_cast<PNGFile*>(this), &OnError,
                                       &OnWarning));
    }
    PNGReader(const PNGReader&) = delete;
    PNGReader& operator=(const PNGReader&) = delete;
    ~PNGReader() { png_destroy_read_struct(&png, &info, nullptr); }

    void Read(MBitmap& bitmap)
    {
        RunReading([this] { ReadHeader(); });
        const auto width = png_get_image_width(png, info);
        const auto height = png_get_image_height(png, info);
        if (std::uint64_t{width} * height > limits::BitmapPixels)
            throw MException("Error loading a PNG file.", MException::BadData);
        bitmap.Create(static_cast<int>(width), static_cast<int>(height), isPaletted);
        if (isPaletted)
            bitmap.GetPalette() = palette;
        RunReading([this, &bitmap] { ReadRows(bitmap); });
    }

private:
    template <typename Step>
    void RunReading(Step step)
    {
        Run(step, "Error loading a PNG file.", MException::BadData);
    }

    static void OnRead(png_structp png, png_bytep bytes, std::size_t count)
    {
        const auto read = [bytes, count](MStream& stream)
        { return stream.Read(std::as_writable_bytes(std::span(bytes, count))) == count; };
        if (!UseStream(png, read))
            png_error(png, "read error");
    }

    /// Goes up to the pixels and tells libpng how to hand them over.
    void ReadHeader()
    {
        png_set_read_fn(png, static_cast<PNGFile*>(this), &OnRead);
        png_set_user_limits(png, limits::BitmapSide, limits::BitmapSide);
        png_set_chunk_malloc_max(png, ChunkBytes);
        // Of what may stand beside the pixels, only the transparency counts.
        png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
        png_read_info(png, info);

        isPaletted = png_get_color_type(png, info) == PNG_COLOR_TYPE_PALETTE;
        if (isPaletted)
        {
            ReadPalette();
            png_set_packing(png); // one index a byte
        }
        else
        {
            png_set_expand(png);
            png_set_strip_16(png);
            png_set_gray_to_rgb(png);
            png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
            png_set_bgr(png);
        }
        passes = png_set_interlace_handling(png);
        png_read_update_info(png, info);
    }

    void ReadPalette()
    {
        png_colorp colours = nullptr;
        int count = 0;
        png_bytep alphas = nullptr;
        int alphaCount = 0;
        png_get_PLTE(png, info, &colours, &count);
        png_get_tRNS(png, info, &alphas, &alphaCount, nullptr);
        palette.fill(MColor(0, 0, 0));
        for (int i = 0; i < count && i < MBitmap::PaletteSize; ++i)
            palette[static_cast<std::size_t>(i)] =
                MColor(colours[i].red, colours[i].green, colours[i].blue,
                       i < alphaCount ? alphas[i] : 255);
    }

    void ReadRows(MBitmap& bitmap)
    {
        for (int pass = 0; pass < passes; ++pass)
            for (int y = 0; y < bitmap.GetHeight(); ++y)
                png_read_row(png,
                             isPaletted ? bitmap.GetIndexRow(y)
                                        : reinterpret_cast<png_bytep>(bitmap.GetRow(y)),
                             nullptr);
        png_read_end(png, nullptr);
    }

    MBitmap::Palette palette;
    bool isPaletted = false;
    int passes = 1;
};

class PNGWriter : private PNGFile
{
public:
    explicit PNGWriter(MStream& fileStream) : PNGFile(fileStream)
    {
        Prepare(png_create_write_struct(PNG_LIBPNG_VER_STRING, static_cast<PNGFile*>(this),
                                        &OnError, &OnWarning));
    }
    PNGWriter(const PNGWriter&) = delete;
    PNGWriter& operator=(const PNGWriter&) = delete;
    ~PNGWriter() { png_destroy_write_struct(&png, &info); }

    void Write(const MBitmap& bitmap)
    {
        Run([this, &bitmap] { WriteAll(bitmap); }, "Error saving a PNG file.", MException::General);
    }

private:
    static void OnWrite(png_structp png, png_bytep bytes, std::size_t count)
    {
        const auto write = [bytes, count](MStream& stream)
        {
            stream.Write(std::as_bytes(std::span(bytes, count)));
            return true;
        };
        if (!UseStream(png, write))
            png_error(png, "write error");
    }
    static void OnFlush(png_structp /*png*/) {} // the stream's owner decides

    void WriteAll(const MBitmap& bitmap)
    {
        png_set_write_fn(png, static_cast<PNGFile*>(this), &OnWrite, &OnFlush);
        png_set_user_limits(png, limits::BitmapSide, limits::BitmapSide);
        png_set_compression_level(png, CompressionLevel);
        png_set_IHDR(png, info, static_cast<png_uint_32>(bitmap.GetWidth()),
                     static_cast<png_uint_32>(bitmap.GetHeight()), 8,
                     bitmap.IsPaletted() ? PNG_COLOR_TYPE_PALETTE : PNG_COLOR_TYPE_RGB_ALPHA,
                     PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        if (bitmap.IsPaletted())
            SetPalette(bitmap.GetPalette());
        png_write_info(png, info);
        if (!bitmap.IsPaletted())
            png_set_bgr(png);
        for (int y = 0; y < bitmap.GetHeight(); ++y)
            png_write_row(png, bitmap.IsPaletted()
                                   ? bitmap.GetIndexRow(y)
                                   : reinterpret_cast<png_const_bytep>(bitmap.GetRow(y)));
        png_write_end(png, info);
    }

    void SetPalette(const MBitmap::Palette& palette)
    {
        std::array<png_color, MBitmap::PaletteSize> colours{};
        std::array<png_byte, MBitmap::PaletteSize> alphas{};
        int alphaCount = 0; // up to the last that is not opaque
        for (std::size_t i = 0; i < palette.size(); ++i)
        {
            const MPixel entry = palette[i].GetPixel();
            colours[i] = {.red = entry.red, .green = entry.green, .blue = entry.blue};
            alphas[i] = entry.alpha;
            if (entry.alpha != 255)
                alphaCount = static_cast<int>(i) + 1;
        }
        png_set_PLTE(png, info, colours.data(), MBitmap::PaletteSize);
        if (alphaCount > 0)
            png_set_tRNS(png, info, alphas.data(), alphaCount, nullptr);
    }
};

} // namespace

void images::LoadPNG(MStream& stream, MBitmap& bitmap)
{
    MBitmap loaded;
    PNGReader(stream).Read(loaded);
    bitmap.Swap(loaded);
}

void images::SavePNG(const MBitmap& bitmap, MStream& stream)
{
    if (bitmap.IsEmpty())
        throw MException("Empty image cannot be saved to PNG.", MException::BadArgument);
    PNGWriter(stream).Write(bitmap);
}
