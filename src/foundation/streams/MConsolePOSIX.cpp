#include "foundation/streams/MConsole.h"

#include <unistd.h>

bool MConsole::IsErrorRead() noexcept
{
    return isatty(STDERR_FILENO) == 1;
}
