#pragma once
// Names that Windows does not allow or does not keep as given. "CON.csv" opens the console, not
// a file; "out." and "out " are silently written as "out"; "a?.csv" fails with a vague error.
// The Windows build checks every path it opens with this, so a careless name gets a message
// that says what is wrong instead of output in the wrong place. Written for any system, so its
// tests run everywhere.

#include <optional>
#include <string>
#include <string_view>

namespace veldra {

// Why Windows would not open `path` (UTF-8) as the file it names, or nothing. Looks at each name in
// the path, not at a drive ("C:") or a server share ("\\server\share").
std::optional<std::string> windows_file_name_problem(std::string_view path);

}  // namespace veldra
