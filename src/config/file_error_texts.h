#pragma once
// Why a file could not be written, in the participant's language: the common reasons someone at
// the screen can act on (a missing folder, no permission, a full or read-only disk, a folder's
// name) come from the language files; any other reason stays as the system gave it.

#include <string>

namespace veldra {

struct Localization;

std::string file_error_text(const Localization& localization, const std::string& reason);

}  // namespace veldra
