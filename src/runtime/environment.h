#pragma once
// Environment variables as the program's UTF-8 text. On Windows they are read wide, so a value
// such as a user folder with letters outside the system's code page arrives intact.

#include <string>

namespace veldra {

// The variable's value, or "" when it is not set.
std::string environment_variable(const char* name);

}  // namespace veldra
