#include "server/request_log.h"

#include <cstdio>
#include <mutex>

#include <fmt/format.h>

namespace veldra {

namespace {

std::string printable(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte <= 0x20 || byte >= 0x7F || c == '\\')
            out += fmt::format("\\x{:02X}", byte);
        else
            out.push_back(c);
    }
    return out;
}

}  // namespace

std::string timestamped_log_line(std::time_t when, std::string_view text) {
    std::tm utc{};
    gmtime_r(&when, &utc);
    char stamp[32];
    std::strftime(stamp, sizeof stamp, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return std::string(stamp) + " " + std::string(text);
}

std::string request_log_line(std::time_t when, std::string_view method, std::string_view path,
                             int status, std::size_t bytes_in, std::size_t bytes_out) {
    return timestamped_log_line(when, fmt::format("{} {} {} in={} out={}", printable(method),
                                                  printable(path), status, bytes_in, bytes_out));
}

void write_log_line(const std::string& line) {
    static std::mutex mutex;
    std::lock_guard lock(mutex);
    std::fputs((line + "\n").c_str(), stdout);
    std::fflush(stdout);
}

}  // namespace veldra
