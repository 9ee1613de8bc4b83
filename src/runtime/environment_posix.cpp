#include <cstdlib>

#include "runtime/environment.h"

namespace veldra {

std::string environment_variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? std::string(value) : std::string();
}

}  // namespace veldra
