#include "runtime/services.h"

#include <cstdio>

namespace veldra {

LocalDateTime FrameClock::local_now() const {
    return wall_clock_ ? wall_clock_() : LocalDateTime{1970, 1, 1, 0, 0, 0};
}

void StderrTerminal::println(LogLevel level, std::string_view line) {
    if (level == LogLevel::info && !verbose)
        return;
    std::string plain = remove_text_tags(line);
    std::fprintf(stderr, "%s\n", plain.c_str());
}

}  // namespace veldra
