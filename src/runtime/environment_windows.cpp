#include <cstdlib>

#include "runtime/environment.h"
#include "runtime/utf16.h"

namespace veldra {

std::string environment_variable(const char* name) {
    const wchar_t* value = _wgetenv(utf8_to_utf16(name).c_str());
    return value ? utf16_to_utf8(value) : std::string();
}

}  // namespace veldra
