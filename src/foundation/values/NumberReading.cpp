#include "foundation/values/NumberReading.h"

#include "foundation/strings/MString.h"
#include "foundation/strings/MStringScanner.h"

namespace numberreading
{

bool Read(const MString& text, double& number)
{
    return text.ReadDouble(number);
}

bool Read(const MString& text, std::int64_t& number)
{
    const char16_t first = text.CharAt(text.CharAt(0) == u'-' ? 1 : 0);
    if (first < u'0' || first > u'9')
        return false;
    number = text.ToInteger();
    return true;
}

bool Scan(const MString& format, const MString& text, double& number)
{
    MStringScanner scanner(format, text);
    if (scanner.FieldCount() != 1)
        return false;
    MString field;
    scanner.Get(field);
    return Read(field, number);
}

bool Scan(const MString& format, const MString& text, std::int64_t& number)
{
    MStringScanner scanner(format, text);
    if (scanner.FieldCount() != 1)
        return false;
    std::int64_t scanned = 0;
    scanner.Get(scanned);
    MString field;
    MStringScanner(format, text).Get(field);
    // What is 0 has to say so; the first digit of any other may be a letter, if the format asks for
    // hexadecimal digits.
    std::int64_t decimal = 0;
    if (scanned == 0 && !Read(field, decimal))
        return false;
    number = scanned;
    return true;
}

} // namespace numberreading
