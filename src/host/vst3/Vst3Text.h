#pragma once

#include "foundation/strings/MString.h"
#include "host/vst3/Vst3Base.h"

namespace Vst3
{

/// Writes at most 127 characters of @p text, whole ones, to the 128 of @p target, and zeros behind
/// them to the end: hosts compare records as bytes.
void CopyText(char16_t* target, const MString& text) noexcept;

/// A zero ended text of the host, which is read up to 128 KiB; null is the empty one.
MString ReadText(const char16_t* text);

} // namespace Vst3
