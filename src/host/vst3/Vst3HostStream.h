#pragma once

#include <cstddef>
#include <span>

#include "foundation/streams/MMemoryStream.h"
#include "host/vst3/Vst3Base.h"

namespace Vst3
{

/// What @p stream has from its position to its end, which is a read of no bytes: such streams
/// cannot tell their size.
/// @throws MException (256) if the host claims more than was asked for, or never comes to an end.
MMemoryStream ReadToEnd(IBStream& stream);

/// Writes all of @p bytes, at once if the host takes them so. What the host answers;
/// kResultFalse if it takes no more.
Result WriteAll(IBStream& stream, std::span<const std::byte> bytes);

} // namespace Vst3
