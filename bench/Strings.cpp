// Texts, formats and encodings beside the C and C++ libraries and fmt.

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <iconv.h>
#include <strings.h>

#include "bench/Goals.h"
#include "foundation/strings/Codecs.h"
#include "foundation/strings/MStringFormatter.h"
#include "foundation/strings/MStringScanner.h"

namespace
{

/// Gains in dB, each of a different length.
constexpr std::array<double, 8> Gains = {-6.0206, 0.0, 12.5, -120.333, 3.01, -0.25, 24.0, -18.0618};

constexpr const char* Name = "parameterOscillatorFrequency";
constexpr const char* NameInCapitals = "PARAMETEROSCILLATORFREQUENCY";
constexpr const char16_t* WideName = u"parameterOscillatorFrequency";
constexpr int Appends = 100;

/// Each benchmark runs one of these again and again; the argument counts the runs.
struct FormatOurs
{
    auto operator()(std::size_t run) const
    {
        return MStringFormatter("{0;.2} dB").Add(Gains[run % Gains.size()]).Result();
    }
};

struct FormatFmt
{
    auto operator()(std::size_t run) const
    {
        return fmt::format("{:.2f} dB", Gains[run % Gains.size()]);
    }
};

/// With the text known when compiling, so that nothing of it is left to read.
struct FormatSnprintf
{
    auto operator()(std::size_t run) const
    {
        std::array<char, 64> buffer;
        std::snprintf(buffer.data(), buffer.size(), "%.2f dB", Gains[run % Gains.size()]);
        return std::string(buffer.data());
    }
};

std::vector<std::string> GainTexts()
{
    std::vector<std::string> texts(Gains.size());
    std::ranges::transform(Gains, texts.begin(),
                           [](double gain) { return fmt::format("{:.2f} dB", gain); });
    return texts;
}

struct ScanOurs
{
    double operator()(std::size_t run) const
    {
        double value = 0.0;
        MStringScanner("{0} dB", texts[run % texts.size()]).Get(value);
        return value;
    }

    std::vector<MString> texts = []
    {
        std::vector<MString> made;
        for (const std::string& text : GainTexts())
            made.push_back(MString::FromUTF8(text));
        return made;
    }();
};

struct ScanSscanf
{
    double operator()(std::size_t run) const
    {
        double value = 0.0;
        // NOLINTNEXTLINE(cert-err34-c)
        std::sscanf(texts[run % texts.size()].c_str(), "%lf dB", &value);
        return value;
    }

    std::vector<std::string> texts = GainTexts();
};

struct CopyOurs
{
    auto operator()(std::size_t /*run*/) const { return text; }

    MString text = MString::FromUTF8(Name);
};

struct CopyU16String
{
    auto operator()(std::size_t /*run*/) const { return text; }

    std::u16string text = WideName;
};

struct AppendCharactersOurs
{
    auto operator()(std::size_t /*run*/) const
    {
        MString text;
        for (int i = 0; i < Appends; ++i)
            text.Append(static_cast<char16_t>(u'a' + i % 26));
        return text;
    }
};

struct AppendCharactersU16String
{
    auto operator()(std::size_t /*run*/) const
    {
        std::u16string text;
        for (int i = 0; i < Appends; ++i)
            text.push_back(static_cast<char16_t>(u'a' + i % 26));
        return text;
    }
};

struct AppendTextsOurs
{
    auto operator()(std::size_t /*run*/) const
    {
        MString text;
        for (int i = 0; i < Appends; ++i)
            text.Append(part);
        return text;
    }

    MString part = MString::FromUTF8(Name);
};

struct AppendTextsU16String
{
    auto operator()(std::size_t /*run*/) const
    {
        std::u16string text;
        for (int i = 0; i < Appends; ++i)
            text.append(part);
        return text;
    }

    std::u16string part = WideName;
};

/// Equal texts are what is compared most: keys that match.
struct CompareOurs
{
    int operator()(std::size_t /*run*/) const { return text.Compare(Name); }

    MString text = MString::FromUTF8(Name);
};

struct CompareOtherCaseOurs
{
    int operator()(std::size_t /*run*/) const { return text.Compare(NameInCapitals); }

    MString text = MString::FromUTF8(Name);
};

struct CompareU16String
{
    int operator()(std::size_t /*run*/) const { return text.compare(WideName); }

    std::u16string text = WideName;
};

struct CompareStrcasecmp
{
    int operator()(std::size_t /*run*/) const { return strcasecmp(text.c_str(), NameInCapitals); }

    std::string text = Name;
};

/// 64 kB of a file, with another character than ASCII behind every @p gap characters.
std::string FileText(std::size_t gap)
{
    const std::string text = std::string(gap, 'x') + "\xE2\x82\xAC";
    std::string file;
    while (file.size() < 65536)
        file += text;
    return file;
}

template <std::size_t Gap>
struct DecodeOursT
{
    std::size_t operator()(std::size_t /*run*/)
    {
        MCodecState state;
        return MEncoding::UTF8Codec::Get()
            .DecodeSome(state, std::as_bytes(std::span(source)), target)
            .written;
    }

    std::string source = FileText(Gap);
    std::vector<char16_t> target = std::vector<char16_t>(source.size() + 2);
};

template <std::size_t Gap>
struct DecodeIconvT
{
    std::size_t operator()(std::size_t /*run*/)
    {
        char* from = source.data();
        char* to = reinterpret_cast<char*>(target.data());
        std::size_t left = source.size();
        std::size_t room = target.size() * sizeof(char16_t);
        iconv(converter, &from, &left, &to, &room);
        return room;
    }

    std::string source = FileText(Gap);
    std::vector<char16_t> target = std::vector<char16_t>(source.size() + 2);
    iconv_t converter = iconv_open("UTF-16LE", "UTF-8");
};

template <std::size_t Gap>
struct EncodeOursT
{
    std::size_t operator()(std::size_t /*run*/)
    {
        MCodecState state;
        return MEncoding::UTF8Codec::Get().EncodeSome(state, source, target).written;
    }

    std::vector<char16_t> source = []
    {
        const MString text = MString::FromUTF8(FileText(Gap));
        return text.WithCharacters(
            [](auto characters)
            { return std::vector<char16_t>(characters.begin(), characters.end()); });
    }();
    std::vector<std::byte> target = std::vector<std::byte>(3 * source.size() + 8);
};

template <class Operation>
void Run(benchmark::State& state)
{
    Operation operation;
    benchmark::DoNotOptimize(&operation);
    std::size_t run = 0;
    for (auto _ : state)
    {
        auto result = operation(run++);
        benchmark::DoNotOptimize(result);
        benchmark::ClobberMemory();
    }
}

template <class Operation>
void Register(const std::string& what)
{
    benchmark::RegisterBenchmark(("Strings/" + what).c_str(), &Run<Operation>);
}

[[maybe_unused]] const bool isRegistered = []
{
    Register<FormatOurs>("format/MStringFormatter");
    Register<FormatFmt>("format/fmt");
    Register<FormatSnprintf>("format/snprintf");
    Register<ScanOurs>("scan/MStringScanner");
    Register<ScanSscanf>("scan/sscanf");
    Register<CopyOurs>("copy/MString");
    Register<CopyU16String>("copy/u16string");
    Register<AppendCharactersOurs>("append 100 characters/MString");
    Register<AppendCharactersU16String>("append 100 characters/u16string");
    Register<AppendTextsOurs>("append 100 texts/MString");
    Register<AppendTextsU16String>("append 100 texts/u16string");
    Register<CompareOurs>("compare/MString");
    Register<CompareOtherCaseOurs>("compare/MString, other case");
    Register<CompareU16String>("compare/u16string");
    Register<CompareStrcasecmp>("compare/strcasecmp, other case");
    Register<DecodeOursT<1000>>("decode 64 kB/UTF8Codec, ASCII");
    Register<DecodeIconvT<1000>>("decode 64 kB/iconv, ASCII");
    Register<DecodeOursT<3>>("decode 64 kB/UTF8Codec, mixed");
    Register<DecodeIconvT<3>>("decode 64 kB/iconv, mixed");
    Register<EncodeOursT<1000>>("encode 64 kB/UTF8Codec, ASCII");
    Register<EncodeOursT<3>>("encode 64 kB/UTF8Codec, mixed");
    RegisterGoal({"format a gain, beside fmt", "Strings/format/MStringFormatter",
                  "Strings/format/fmt", 1.1});
    RegisterGoal(
        {"scan a gain, beside sscanf", "Strings/scan/MStringScanner", "Strings/scan/sscanf", 1.0});
    return true;
}();

} // namespace
