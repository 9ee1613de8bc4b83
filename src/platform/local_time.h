#pragma once
// The wall-clock date and time in the user's time zone, for log names and timestamps. The
// runtime's clock takes it as a function (runtime/services.h), so the simulation itself never
// reads the system clock.

#include "runtime/services.h"

namespace veldra::platform {

LocalDateTime local_time_now();

}  // namespace veldra::platform
