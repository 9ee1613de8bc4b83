#include "runtime/environment.h"

#include <cstdlib>

#include "runtime/utf16.h"

namespace veldra {

std::string environment_variable(const char* name) {
#ifdef _WIN32
    const wchar_t* value = _wgetenv(utf8_to_utf16(name).c_str());
    return value ? utf16_to_utf8(value) : std::string();
#else
    const char* value = std::getenv(name);
    return value ? std::string(value) : std::string();
#endif
}

}  // namespace veldra
