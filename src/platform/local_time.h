#pragma once
// The wall-clock date and time in the user's time zone, for log names and timestamps. The
// runtime's clock takes it as a function (runtime/services.h), so the simulation itself never
// reads the system clock.

#include <ctime>

#include "runtime/services.h"

namespace veldra::platform {

LocalDateTime local_time_now();
// `seconds` since the epoch in the user's time zone (local_time_posix.cpp, _windows.cpp: the
// thread-safe conversion is spelled differently on each system).
LocalDateTime to_local_date_time(std::time_t seconds);

}  // namespace veldra::platform
