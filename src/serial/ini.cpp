#include "serial/ini.h"

namespace veldra {

namespace {
std::string_view trim(std::string_view text) {
    constexpr std::string_view space = " \t\r\n\v\f";
    auto first = text.find_first_not_of(space);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(space) - first + 1);
}
}  // namespace

const IniFile::Entries* IniFile::section(std::string_view name) const {
    const auto it = section_index_.find(std::string(name));
    return it == section_index_.end() ? nullptr : &sections_[it->second].entries;
}

IniFile::Section& IniFile::section_for_write(std::string_view name) {
    const auto [it, added] = section_index_.try_emplace(std::string(name), sections_.size());
    if (added)
        sections_.emplace_back();
    return sections_[it->second];
}

void IniFile::set(std::string_view section_name, std::string key, std::string value) {
    Section& section = section_for_write(section_name);
    const auto [it, added] = section.index.try_emplace(key, section.entries.size());
    if (added)
        section.entries.emplace_back(std::move(key), std::move(value));
    else
        section.entries[it->second].second = std::move(value);  // the last one counts
}

IniFile ini_parse(std::string_view text) {
    // Editors on Windows like to start UTF-8 files with a byte order mark.
    constexpr std::string_view bom = "\xEF\xBB\xBF";
    if (text.substr(0, bom.size()) == bom)
        text.remove_prefix(bom.size());
    IniFile ini;
    std::string current;
    std::size_t line_number = 0;
    std::size_t start = 0;
    while (start <= text.size()) {
        ++line_number;
        auto end = text.find('\n', start);
        std::string_view line = trim(text.substr(
            start, end == std::string_view::npos ? std::string_view::npos : end - start));
        start = end == std::string_view::npos ? text.size() + 1 : end + 1;
        if (line.empty() || line.front() == ';' || line.front() == '#')
            continue;
        if (line.front() == '[' && line.back() == ']') {
            current = std::string(trim(line.substr(1, line.size() - 2)));
            continue;
        }
        auto equals = line.find('=');
        if (line.front() == '[' || equals == std::string_view::npos || equals == 0) {
            ini.skipped_lines.push_back({line_number, std::string(line)});
            continue;
        }
        ini.set(current, std::string(trim(line.substr(0, equals))),
                std::string(trim(line.substr(equals + 1))));
    }
    return ini;
}

}  // namespace veldra
