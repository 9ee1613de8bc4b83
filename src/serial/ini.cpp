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
    for (const auto& [section_name, entries] : sections_)
        if (section_name == name)
            return &entries;
    return nullptr;
}

IniFile::Entries& IniFile::section_for_write(std::string_view name) {
    for (auto& [section_name, entries] : sections_)
        if (section_name == name)
            return entries;
    sections_.emplace_back(std::string(name), Entries{});
    return sections_.back().second;
}

std::optional<IniFile> ini_parse(std::string_view text) {
    // Editors on Windows like to start UTF-8 files with a byte order mark.
    constexpr std::string_view bom = "\xEF\xBB\xBF";
    if (text.substr(0, bom.size()) == bom)
        text.remove_prefix(bom.size());
    IniFile ini;
    IniFile::Entries* current = &ini.section_for_write("");
    std::size_t start = 0;
    while (start <= text.size()) {
        auto end = text.find('\n', start);
        std::string_view line = trim(text.substr(
            start, end == std::string_view::npos ? std::string_view::npos : end - start));
        start = end == std::string_view::npos ? text.size() + 1 : end + 1;
        if (line.empty() || line.front() == ';' || line.front() == '#')
            continue;
        if (line.front() == '[') {
            if (line.back() != ']')
                return std::nullopt;
            current = &ini.section_for_write(trim(line.substr(1, line.size() - 2)));
            continue;
        }
        auto equals = line.find('=');
        if (equals == std::string_view::npos)
            return std::nullopt;
        std::string key(trim(line.substr(0, equals)));
        std::string value(trim(line.substr(equals + 1)));
        bool replaced = false;
        for (auto& entry : *current)
            if (entry.first == key) {
                entry.second = value;  // a repeated key: the last one counts
                replaced = true;
            }
        if (!replaced)
            current->emplace_back(std::move(key), std::move(value));
    }
    return ini;
}

}  // namespace veldra
