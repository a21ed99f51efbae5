#include "foundation/threads/MException.h"

MException::MException(const MString& message, std::int32_t failureCode) noexcept
    : text(message),
      code(failureCode)
{
}
