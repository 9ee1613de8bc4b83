#include <windows.h>

#include <string>

#include "platform/os_name.h"

namespace veldra::platform {

namespace {

// GetProcAddress returns a generic pointer; the one without parameters converts to any other
// function pointer without a compiler warning.
template <class Function>
Function* ntdll_function(const char* name) {
    const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
    if (!ntdll)
        return nullptr;
    const auto generic = reinterpret_cast<void (*)()>(GetProcAddress(ntdll, name));
    return reinterpret_cast<Function*>(generic);
}

}  // namespace

std::string os_name() {
    // GetVersionEx answers what the program's manifest claims to support; ntdll tells the truth.
    using GetVersion = LONG WINAPI(OSVERSIONINFOW*);
    OSVERSIONINFOW info{};
    info.dwOSVersionInfoSize = sizeof info;
    const auto get_version = ntdll_function<GetVersion>("RtlGetVersion");
    if (!get_version || get_version(&info) != 0)
        return "unknown -1";
    std::string name = "Windows " + std::to_string(info.dwMajorVersion) + "." +
                       std::to_string(info.dwMinorVersion) + "." +
                       std::to_string(info.dwBuildNumber);
    // Results under Wine are worth telling apart from those on a real Windows PC.
    using WineVersion = const char*();
    if (const auto wine_version = ntdll_function<WineVersion>("wine_get_version"))
        name += std::string(" (Wine ") + wine_version() + ")";
    return name;
}

}  // namespace veldra::platform
