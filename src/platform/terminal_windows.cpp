#include <windows.h>

#include "platform/terminal.h"

namespace veldra::platform {

bool stderr_is_terminal() {
    // Only a console has a console mode; a file, a pipe or no handle at all does not.
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

}  // namespace veldra::platform
