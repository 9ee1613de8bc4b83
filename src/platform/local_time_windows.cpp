#include "platform/local_time.h"

namespace veldra::platform {

LocalDateTime to_local_date_time(std::time_t seconds) {
    std::tm local{};
    localtime_s(&local, &seconds);  // Microsoft's order: the result first
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
            local.tm_hour,        local.tm_min,     local.tm_sec};
}

}  // namespace veldra::platform
