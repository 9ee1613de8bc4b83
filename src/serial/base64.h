#pragma once
// Base64 with the standard alphabet and "=" padding, as HTTP basic authentication writes it.

#include <string>
#include <string_view>

namespace veldra {

std::string base64_encode(std::string_view bytes);

}  // namespace veldra
