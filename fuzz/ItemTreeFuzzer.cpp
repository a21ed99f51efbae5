// Reads strangers' item trees. What was read and written once comes back from then on as it is, in
// both forms.

#include <cstdlib>
#include <cstring>
#include <span>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

/// Whether a UTF-8 file keeps all of @p text. It drops halves of surrogate pairs and turns the
/// characters from U+10FE01 to U+10FEFF, which stand for raw bytes, into these bytes.
bool Survives(const MString& text)
{
    for (int i = 0; i < text.Length(); ++i)
    {
        const char16_t character = text.CharAt(i);
        if (character < 0xD800 || character > 0xDFFF)
            continue;
        const char16_t next = text.CharAt(++i);
        const bool isPair = character < 0xDC00 && next >= 0xDC00 && next < 0xE000;
        if (!isPair || (character == 0xDBFF && next > 0xDE00 && next <= 0xDEFF))
            return false;
    }
    return true;
}

bool Survives(const MXMLItem& item)
{
    if (!Survives(item.GetName()) || !Survives(item.GetText()))
        return false;
    for (const MAttribute& attribute : item.GetAttributes())
        if (!Survives(attribute.name) || !Survives(attribute.value))
            return false;
    for (const auto& subItem : item.GetSubItems())
        if (!Survives(*subItem))
            return false;
    return true;
}

MMemoryStream Write(const MXMLItem& item, bool isCompact)
{
    MMemoryStream stream;
    item.Save(stream, isCompact, "utf-8");
    stream.Seek(0, MStream::FromStart);
    return stream;
}

/// What @p text looks like once it has been read and written.
MMemoryStream Rewrite(MMemoryStream text, bool isCompact)
{
    MXMLItem item("");
    item.Load(text);
    return Write(item, isCompact);
}

void ExpectFixpoint(const MXMLItem& item, bool isCompact)
{
    // White space in a text is settled by the first reading.
    const MMemoryStream settled = Rewrite(Write(item, isCompact), isCompact);
    const MMemoryStream again = Rewrite(settled, isCompact);
    if (settled.GetData().size() != again.GetData().size() ||
        std::memcmp(settled.GetData().data(), again.GetData().data(), again.GetData().size()) != 0)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    MXMLItem item("");
    try
    {
        MMemoryStream stream = MMemoryStream::Refer(std::as_bytes(std::span(data, size)));
        item.Load(stream);
    }
    catch (const MException&) // refused, as it may be
    {
        return 0;
    }
    if (Survives(item))
    {
        ExpectFixpoint(item, true);
        ExpectFixpoint(item, false);
    }
    return 0;
}
