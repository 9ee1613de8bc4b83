#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>

#include "platform/program_arguments.h"
#include "runtime/utf16.h"

namespace veldra::platform {

std::vector<std::string> program_arguments(int argc, char** argv) {
    int count = 0;
    wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!wide)
        return std::vector<std::string>(argv, argv + argc);
    std::vector<std::string> arguments;
    for (int i = 0; i < count; ++i)
        arguments.push_back(utf16_to_utf8(wide[i]));
    LocalFree(wide);
    return arguments;
}

}  // namespace veldra::platform
