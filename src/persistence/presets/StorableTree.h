#pragma once

#include "foundation/strings/MString.h"

class MXMLItem;

/// Makes trees such that a file gives them back.
namespace storabletree
{

/// Without the characters that would not come back, or take what follows with them: halves of
/// surrogate pairs, U+FEFF, and U+10FE01 to U+10FEFF, which are written as raw bytes.
MString DropUnstorable(const MString& text);
/// The same for all texts and values at and below @p item.
/// @throws MException (256) "Invalid file contents. Names hold characters that cannot be stored."
/// for the names of items and attributes
void DropUnstorable(MXMLItem& item);
/// Refuses what a parser would refuse to read back. @throws MException (256) as MMLParser does
void CheckLimits(const MXMLItem& root);

} // namespace storabletree
