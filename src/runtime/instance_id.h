#pragma once
#include <cstdint>

namespace veldra {

// Entities refer to each other by id, never by pointer across frames. Ids are never reused.
using InstanceId = std::int64_t;
inline constexpr InstanceId NO_INSTANCE = -4;

}  // namespace veldra
