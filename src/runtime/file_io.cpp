#include "runtime/file_io.h"
#include "runtime/utf8_path.h"

#include <filesystem>
#include <system_error>

namespace veldra {

namespace {

std::string size_text(std::size_t bytes) {
    if (bytes >= (std::size_t{1} << 30) && bytes % (std::size_t{1} << 30) == 0)
        return std::to_string(bytes >> 30) + " GiB";
    if (bytes >= (std::size_t{1} << 20) && bytes % (std::size_t{1} << 20) == 0)
        return std::to_string(bytes >> 20) + " MiB";
    if (bytes >= 1024 && bytes % 1024 == 0)
        return std::to_string(bytes >> 10) + " KiB";
    return std::to_string(bytes) + " bytes";
}

}  // namespace

std::string file_too_large_reason(std::size_t max_bytes) {
    return "is larger than " + size_text(max_bytes) + ", the most this file may hold";
}

std::string system_error_text(int error_number) {
    return std::generic_category().message(error_number);
}

bool same_file(const std::string& a, const std::string& b) {
    std::error_code error;
    return std::filesystem::equivalent(utf8_path(a), utf8_path(b), error) && !error;
}

}  // namespace veldra
