#include "runtime/files.h"

#include <filesystem>
#include <system_error>

#include "runtime/paths.h"
#include "runtime/utf8_path.h"

namespace veldra {

FileText DiskFiles::read(const std::string& path, std::size_t max_bytes) {
    return read_whole_file(path, max_bytes);
}

std::string DiskFiles::write(const std::string& path, const std::string& text) {
    return write_whole_file(path, text);
}

bool DiskFiles::exists(const std::string& path) {
    return file_exists(path);
}

std::string DiskFiles::create_directories(const std::string& directory) {
    std::error_code error;
    std::filesystem::create_directories(utf8_path(directory), error);
    return error ? error.message() : std::string();
}

FileText MemoryFiles::read(const std::string& path, std::size_t max_bytes) {
    const auto found = files.find(path);
    if (found == files.end())
        return FileText{std::nullopt, FILE_MISSING_REASON};
    if (found->second.size() > max_bytes)
        return FileText{std::nullopt, file_too_large_reason(max_bytes)};
    return FileText{found->second, {}};
}

std::string MemoryFiles::write(const std::string& path, const std::string& text) {
    files[path] = text;
    return {};
}

bool MemoryFiles::exists(const std::string& path) {
    return files.contains(path);
}

std::string MemoryFiles::create_directories(const std::string&) {
    return {};
}

}  // namespace veldra
