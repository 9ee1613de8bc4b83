#include "platform/local_time.h"

#include <chrono>

namespace veldra::platform {

LocalDateTime local_time_now() {
    return to_local_date_time(
        std::chrono::system_clock::to_time_t(std::chrono::system_clock::now()));
}

}  // namespace veldra::platform
