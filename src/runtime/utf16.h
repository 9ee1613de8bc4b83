#pragma once
// The program's text is UTF-8 everywhere; Windows' file and process calls take UTF-16. These
// convert at that border, so a folder named "Jürgen" reaches the system as itself and not as
// whatever the user's code page makes of its bytes. Portable code, so both builds test it.

#include <string>
#include <string_view>

namespace veldra {

// UTF-16 code units, one per wchar_t (Windows' wide strings). A byte that is not part of valid
// UTF-8 becomes U+FFFD, so a broken name still reaches the system as something readable.
std::wstring utf8_to_utf16(std::string_view text);
// The reverse; a lone surrogate becomes U+FFFD.
std::string utf16_to_utf8(std::wstring_view text);

}  // namespace veldra
