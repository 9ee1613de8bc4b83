#pragma once
// The account the game authenticates with, read from a JSON file with the keys api_username and
// api_password: the game's own .api_env.json serves as it is (its remote_url is not read), so
// the study's two sides cannot drift apart. Kept in a file rather than on the command line,
// where every user of the machine could read it in the process list.

#include <optional>
#include <string>

#include "server/basic_auth.h"

namespace veldra {

struct CredentialsRead {
    std::optional<BasicCredentials> credentials;
    std::string error;  // names the file and what is wrong; never shows the password
};

CredentialsRead read_credentials_file(const std::string& path);

}  // namespace veldra
