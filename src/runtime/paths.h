#pragma once
// Where files are looked for. Data the game ships (configuration, languages, levels) lives in
// the data directory: $VeldraProjectDir/datafiles/ when that is set (a run from the source
// tree), else the datafiles folder next to the program. Paths a user types resolve against the
// working directory first, then the data directory.

#include <filesystem>
#include <string>
#include <string_view>

namespace veldra {

// A file the game ships: data directory + name.
std::string make_included_file_filename(std::string_view name);

// A path a user gave: as given when it exists there (or is absolute), else in the data
// directory when it exists there, else as given (so that errors show what the user typed).
std::string resolve_user_path(std::string_view path);

bool file_exists(const std::string& path);

}  // namespace veldra
