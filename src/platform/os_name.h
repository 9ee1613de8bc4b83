#pragma once
// The name and version of the operating system, for the start-up log.

#include <optional>
#include <string>
#include <string_view>

namespace veldra::platform {

// The PRETTY_NAME of an os-release text ("Debian GNU/Linux 12 (bookworm)"), without its
// quotes; nullopt when the text has none or only an empty one.
std::optional<std::string> os_release_pretty_name(std::string_view text);

// The system as its users know it. Linux: from os-release; the kernel's name and release only
// where that file is missing; "unknown -1" when not even the kernel says. Windows: "Windows"
// and its version number, with Wine's version when it runs under Wine.
std::string os_name();

}  // namespace veldra::platform
