#include "platform/screenshot_name.h"

#include <chrono>
#include <cstdio>
#include <ctime>

#include "platform/local_time.h"

namespace veldra::platform {

std::string screenshot_file_name(const LocalDateTime& t, int milliseconds) {
    char name[64];
    std::snprintf(name, sizeof name, "veldra-%04d%02d%02d-%02d%02d%02d-%03d.png", t.year, t.month,
                  t.day, t.hour, t.minute, t.second, milliseconds % 1000);
    return name;
}

std::string screenshot_file_name_now() {
    // One reading for both, so 12:00:00.999 cannot become 12:00:01.999.
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch());
    return screenshot_file_name(to_local_date_time(seconds), static_cast<int>(ms.count() % 1000));
}

}  // namespace veldra::platform
