#include <windows.h>

#include <cstdio>

#include "platform/console.h"

namespace veldra::platform {

namespace {

// A stream the parent redirected (to a file, a pipe) stays where it was sent.
bool redirected(DWORD which) {
    const HANDLE handle = GetStdHandle(which);
    return handle != nullptr && handle != INVALID_HANDLE_VALUE &&
           GetFileType(handle) != FILE_TYPE_UNKNOWN;
}

}  // namespace

void use_parent_console() {
    const bool out_redirected = redirected(STD_OUTPUT_HANDLE);
    const bool err_redirected = redirected(STD_ERROR_HANDLE);
    if ((out_redirected && err_redirected) || !AttachConsole(ATTACH_PARENT_PROCESS))
        return;  // a double-click: no console, and none is wanted
    if (!out_redirected && std::freopen("CONOUT$", "w", stdout))
        std::setvbuf(stdout, nullptr, _IOLBF, 4096);
    if (!err_redirected && std::freopen("CONOUT$", "w", stderr))
        std::setvbuf(stderr, nullptr, _IONBF, 0);
}

}  // namespace veldra::platform
