#pragma once

#include <memory>

#include "foundation/xml/MXMLItem.h"

/// The state of an object as a text for the clipboard: its item, compressed, in hexadecimal digits.
/// The name of the item tells what kind of object it is.
namespace clipboardtext
{

/// @throws MException as MXMLItem::SaveCompressed does
MString Write(const MXMLItem& item);
/// @throws MException (256) as MHexaStream and MXMLItem::LoadCompressed do, and "Invalid file
/// contents. There is no element \"{0}\"." for an item that is not called @p type
std::unique_ptr<MXMLItem> Read(const MString& text, const MString& type);

} // namespace clipboardtext
