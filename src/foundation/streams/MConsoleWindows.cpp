#include "foundation/streams/MConsole.h"

#include <windows.h>

bool MConsole::IsErrorRead() noexcept
{
    // Only a console has a mode; a file, a pipe and a program without one have not.
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}
