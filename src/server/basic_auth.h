#pragma once
// HTTP basic authentication against the one account the game is configured with. The password
// is compared in time that does not depend on where a guess goes wrong, and neither the header
// nor the password is ever written to the log.

#include <optional>
#include <string>
#include <string_view>

namespace veldra {

struct BasicCredentials {
    std::string username;
    std::string password;
};

// True when `authorization` (the header's value) is "Basic " followed by the base64 form of
// "username:password" of `expected`. The scheme's name is case-insensitive.
bool basic_auth_matches(std::string_view authorization, const BasicCredentials& expected);

// The time taken depends on the lengths only, never on the position of the first difference.
bool constant_time_equals(std::string_view given, std::string_view expected);

// Standard alphabet with "=" padding; nullopt for anything else.
std::optional<std::string> base64_decode(std::string_view text);

}  // namespace veldra
