// Beside the converter of the C library, which other platforms lack.

#include <array>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <iconv.h>

#include "foundation/strings/Codecs.h"
#include "tests/foundation/strings/Bytes.h"

namespace
{

/// The C library's converter.
class Converter
{
public:
    Converter(const char* to, const char* from) : handle(iconv_open(to, from)) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter() { iconv_close(handle); }

    bool IsOpen() const { return handle != reinterpret_cast<iconv_t>(-1); }
    /// Empty where there is no exact conversion.
    std::string Convert(std::string source)
    {
        char target[16];
        char* from = source.data();
        char* to = target;
        std::size_t left = source.size();
        std::size_t room = sizeof(target);
        iconv(handle, nullptr, nullptr, nullptr, nullptr);
        const bool isDone = iconv(handle, &from, &left, &to, &room) == 0 &&
                            iconv(handle, nullptr, nullptr, &to, &room) == 0;
        return isDone ? std::string(target, to) : std::string();
    }

private:
    iconv_t handle;
};

/// What the C library calls the encoding.
std::string LibraryName(const MEncoding::Codec& codec)
{
    const std::string name = codec.GetName().ToUTF8();
    if (name.starts_with("windows-"))
        return "CP" + name.substr(8);
    return name == "Apple Roman" ? "MACINTOSH" : name == "roman8" ? "HP-ROMAN8" : name;
}

int JoinBytes(std::string_view bytes)
{
    return static_cast<unsigned char>(bytes[0]) | static_cast<unsigned char>(bytes[1]) << 8;
}

std::string UnitBytes(char16_t unit)
{
    return {static_cast<char>(unit), static_cast<char>(unit >> 8)};
}

TEST(TableCodec, AgreesWithTheCLibraryOnEveryByteAndCharacter)
{
    for (const MEncoding::TableCodec& codec : MEncoding::TableCodec::All())
    {
        const std::string name = LibraryName(codec);
        Converter toUnits("UTF-16LE", name.c_str());
        Converter toBytes(name.c_str(), "UTF-16LE");
        ASSERT_TRUE(toUnits.IsOpen() && toBytes.IsOpen()) << name;

        // Where the C library follows an older table of the maker.
        const auto isDisputed = [&name](char16_t unit)
        { return name == "MACINTOSH" && (unit == 0x2206 || unit == 0x394 || unit >= 0xE000); };

        for (int byte = 1; byte < 256; ++byte)
        {
            const MString text = codec.Decode(Bytes(std::string(1, static_cast<char>(byte))));
            ASSERT_EQ(text.Length(), 1) << name << ", " << byte;
            const char16_t unit = text.CharAt(0);
            const std::string expected = toUnits.Convert(std::string(1, static_cast<char>(byte)));
            if (isDisputed(unit))
                continue;
            const int open = byte < 160 ? byte : 0xFFFD;
            EXPECT_EQ(unit, expected.empty() ? open : JoinBytes(expected)) << name << ", " << byte;
        }

        for (int character = 1; character < 0x10000; ++character)
        {
            const auto unit = static_cast<char16_t>(character);
            std::array<std::byte, 8> target;
            MCodecState state;
            const MCodecProgress progress = codec.EncodeSome(state, std::span(&unit, 1), target);
            const std::string expected = toBytes.Convert(UnitBytes(unit));
            // Taken apart into others, or a control character for a byte that is open there.
            const bool isApart =
                expected.size() > 1 ||
                (expected.size() == 1 && toUnits.Convert(expected) != UnitBytes(unit));
            if (isApart || (character >= 128 && character < 160) || isDisputed(unit))
                continue;
            EXPECT_EQ(Chars(std::span(target).first(progress.written)), expected)
                << name << ", " << character;
        }
    }
}

TEST(TableCodec, WritesBackEveryByteThatHasACharacter)
{
    for (const MEncoding::TableCodec& codec : MEncoding::TableCodec::All())
        for (int byte = 128; byte < 256; ++byte)
        {
            const std::string source(1, static_cast<char>(byte));
            const MString text = codec.Decode(Bytes(source));
            EXPECT_EQ(Chars(codec.Encode(text, false)), text.CharAt(0) == 0xFFFD ? "" : source)
                << LibraryName(codec) << ", " << byte;
        }
}

TEST(TableCodecThreads, TheFirstWriteMayHappenOnSeveralThreads)
{
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t)
        threads.emplace_back(
            []
            {
                for (const char* const name : {"cp1251", "koi8-r"})
                {
                    const MEncoding::Codec& codec = MEncoding::GetCodec(name);
                    const std::string bytes = "\xC0\xE1\xF2 abc";
                    EXPECT_EQ(Chars(codec.Encode(codec.Decode(Bytes(bytes)), false)), bytes);
                }
            });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
