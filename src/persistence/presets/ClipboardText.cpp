#include "persistence/presets/ClipboardText.h"

#include <string>

#include "foundation/streams/MHexaStream.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"

MString clipboardtext::Write(const MXMLItem& item)
{
    MMemoryStream packed;
    item.SaveCompressed(packed, "utf-8");
    packed.Seek(0, MStream::FromStart);
    return MHexaStream::ToText(packed);
}

std::unique_ptr<MXMLItem> clipboardtext::Read(const MString& text, const MString& type)
{
    const std::string characters = text.ToUTF8();
    MMemoryStream digits = MMemoryStream::Refer(std::as_bytes(std::span(characters)));
    MHexaStream packed(digits);
    auto item = std::make_unique<MXMLItem>("");
    item->LoadCompressed(packed);
    if (!(item->GetName() == type))
        throw MException(MStringFormatter("Invalid file contents. There is no element \"{0}\".")
                             .Add(type)
                             .Result(),
                         MException::BadData);
    return item;
}
