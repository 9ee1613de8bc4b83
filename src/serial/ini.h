#pragma once
// INI text: `[section]` headers and `key=value` lines. Lines starting with ";" or "#" are
// comments; white space around keys and values is trimmed and a trailing "\r" dropped. Values
// are kept otherwise verbatim (escape sequences are the reader's business).
// A UTF-8 byte order mark at the start is skipped.

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace veldra {

class IniFile {
public:
    using Entries = std::vector<std::pair<std::string, std::string>>;  // file order

    // nullptr when the file has no such section.
    const Entries* section(std::string_view name) const;
    Entries& section_for_write(std::string_view name);

private:
    std::vector<std::pair<std::string, Entries>> sections_;
};

// nullopt when a line is neither blank, comment, section header nor key=value.
std::optional<IniFile> ini_parse(std::string_view text);

}  // namespace veldra
