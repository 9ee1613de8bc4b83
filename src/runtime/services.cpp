#include "runtime/services.h"

#include <chrono>
#include <cstdio>
#include <ctime>

#include "runtime/context.h"

namespace veldra {

Services& services() {
    return ctx().slot<Services>();
}

LocalDateTime FrameClock::local_now() const {
    std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm local{};
    localtime_r(&now, &local);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
            local.tm_hour,        local.tm_min,     local.tm_sec};
}

void StderrTerminal::println(LogLevel level, std::string_view line) {
    if (level == LogLevel::info && !verbose)
        return;
    std::string plain = remove_text_tags(line);
    std::fprintf(stderr, "%s\n", plain.c_str());
}

}  // namespace veldra
