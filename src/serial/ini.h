#pragma once
// INI text: `[section]` headers and `key=value` lines. Lines starting with ";" or "#" are
// comments; white space around keys and values is trimmed and a trailing "\r" dropped. Values
// are kept otherwise verbatim (escape sequences are the reader's business).
// A UTF-8 byte order mark at the start is skipped. A repeated key keeps its first place and
// takes the last value. A line that is none of these is skipped and listed, so that one stray
// line costs its reader a warning, not the whole file.

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace veldra {

class IniFile {
public:
    using Entries = std::vector<std::pair<std::string, std::string>>;  // file order

    struct SkippedLine {
        std::size_t line;  // 1-based
        std::string text;  // trimmed
    };

    // nullptr when the file has no such section.
    const Entries* section(std::string_view name) const;
    // Sets `key` in `section`, in linear time however many keys and sections there are.
    void set(std::string_view section, std::string key, std::string value);

    std::vector<SkippedLine> skipped_lines;

private:
    struct Section {
        Entries entries;
        std::unordered_map<std::string, std::size_t> index;  // key to its place in entries
    };
    Section& section_for_write(std::string_view name);

    std::vector<Section> sections_;
    std::unordered_map<std::string, std::size_t> section_index_;
};

IniFile ini_parse(std::string_view text);

}  // namespace veldra
