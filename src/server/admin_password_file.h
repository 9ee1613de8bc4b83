#pragma once
// The password of the researcher's page, read from a file of its own (the first line, without
// the white space around it), so that it is neither on the command line, where every user of
// the machine could read it, nor in the game's credentials, which every participant has.

#include <optional>
#include <string>

namespace veldra {

struct AdminPasswordRead {
    std::optional<std::string> password;
    std::string error;  // names the file and what is wrong; never shows the password
};

// At least 8 characters: the page shows who took part and can delete records.
AdminPasswordRead read_admin_password_file(const std::string& path);

}  // namespace veldra
