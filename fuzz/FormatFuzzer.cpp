// Fills and scans by strangers' formats, and by formats of known form, whose values have to come
// back.

#include <cstdlib>
#include <string>

#include <fuzzer/FuzzedDataProvider.h>

#include "foundation/strings/MStringFormatter.h"
#include "foundation/strings/MStringScanner.h"
#include "foundation/threads/MException.h"

namespace
{

void Require(bool condition)
{
    if (!condition)
        std::abort();
}

MString Fill(FuzzedDataProvider& provider, const MString& format)
{
    MStringFormatter formatter(format);
    for (int arguments = provider.ConsumeIntegralInRange(0, 34); arguments > 0; --arguments)
        switch (provider.ConsumeIntegralInRange(0, 3))
        {
        case 0:
            formatter.Add(provider.ConsumeIntegral<std::int64_t>());
            break;
        case 1:
            formatter.Add(provider.ConsumeIntegral<std::uint64_t>());
            break;
        case 2:
            formatter.Add(provider.ConsumeFloatingPoint<double>());
            break;
        default:
            formatter.Add(MString::FromUTF8(provider.ConsumeRandomLengthString(40)));
        }
    return formatter.Result();
}

void Scan(FuzzedDataProvider& provider, const MString& format, const MString& text)
{
    MStringScanner scanner(format, text);
    Require(scanner.FieldCount() >= 0 && scanner.FieldCount() <= 32);
    double number = 0.0;
    std::int64_t i64 = 0;
    std::int32_t i32 = 0;
    std::int16_t i16 = 0;
    std::int8_t i8 = 0;
    MString field;
    for (int i = 0; i < 34; ++i)
        switch (provider.ConsumeIntegralInRange(0, 5))
        {
        case 0:
            scanner.Get(number);
            break;
        case 1:
            scanner.Get(i64);
            break;
        case 2:
            scanner.Get(i32);
            break;
        case 3:
            scanner.Get(i16);
            break;
        case 4:
            scanner.Get(i8);
            break;
        default:
            scanner.Get(field);
            Require(field.Length() <= text.Length());
        }
}

/// Three values in any order, set apart by characters that they do not have.
void RoundTrip(FuzzedDataProvider& provider)
{
    const auto first = provider.ConsumeIntegral<std::int64_t>();
    const auto second = provider.ConsumeIntegral<std::int32_t>();
    std::string letters = provider.ConsumeRandomLengthString(40);
    for (char& letter : letters)
        letter = static_cast<char>('a' + static_cast<unsigned char>(letter) % 26);

    constexpr const char* Formats[] = {"{0;%02d}; {1x;%02d}|[{2}]", "<{2}> {1x;%02d}/{0;%02d}!",
                                       "{{{1x;%02d}}} {2} {0;%02d}"};
    const int widths[] = {provider.ConsumeIntegralInRange(0, 99),
                          provider.ConsumeIntegralInRange(0, 99)};
    // The text of an empty field cannot be told from the blank before it.
    const int form = provider.ConsumeIntegralInRange(0, letters.empty() ? 1 : 2);
    const MString format = MString::Print(Formats[form], widths[0], widths[1]);
    const MString text =
        MStringFormatter(format).Add(first).Add(second).Add(MString::FromUTF8(letters)).Result();

    std::int64_t readFirst = 0;
    std::int32_t readSecond = 0;
    MString readLetters;
    MStringScanner scanner(format, text);
    scanner.Get(readFirst).Get(readSecond).Get(readLetters);
    Require(scanner.FieldCount() == 3 && readFirst == first && readSecond == second &&
            readLetters.ToUTF8() == letters);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzedDataProvider provider(data, size);
    RoundTrip(provider);
    try
    {
        const MString format = MString::FromUTF8(provider.ConsumeRandomLengthString(400));
        const MString text = Fill(provider, format);
        Scan(provider, format, text);
        Scan(provider, MString::FromUTF8(provider.ConsumeRandomLengthString(100)), text);
    }
    catch (const MException&) // a broken format
    {
    }
    return 0;
}
