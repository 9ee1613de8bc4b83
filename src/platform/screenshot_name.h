#pragma once
// F12 screenshots are named by when they were taken, so they sort by time and never overwrite
// each other within a session.

#include <string>

#include "runtime/services.h"

namespace veldra::platform {

// "veldra-YYYYMMDD-HHMMSS-mmm.png".
std::string screenshot_file_name(const LocalDateTime& time, int milliseconds);

// The name for a screenshot taken now, in the user's time zone.
std::string screenshot_file_name_now();

}  // namespace veldra::platform
