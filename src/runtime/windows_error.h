#pragma once
// The reason a Windows call failed, worded as the POSIX build words it where the two systems
// mean the same (no such file, permission denied, disk full ...), so the game's translated
// file errors (config/file_error_texts.h) and every test of a reason apply on both. Other
// codes keep the system's own message. Used by the runtime's _windows.cpp files only.

#include <string>

namespace veldra {

// `code` is a GetLastError() value.
std::string windows_error_text(unsigned long code);

}  // namespace veldra
