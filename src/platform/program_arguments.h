#pragma once
// The command line as the program's UTF-8 text. On Windows main()'s argv is in the user's code
// page, which cannot hold every name (a user_id, a folder), so the wide command line is read
// instead; elsewhere argv already is the text.

#include <string>
#include <vector>

namespace veldra::platform {

std::vector<std::string> program_arguments(int argc, char** argv);

}  // namespace veldra::platform
