#pragma once
#include <string>
#include <string_view>

namespace veldra {

// Strips "//" line comments from JSON text. Per line, the LAST "//" is the comment's start when
// an even number of double quotes stands before it (outside any string); the line is cut there.
// So a line with two comments loses only the second: one comment per line.
std::string _json_remove_comments(std::string_view text);

}  // namespace veldra
