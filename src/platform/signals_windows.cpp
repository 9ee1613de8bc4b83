#include "platform/signals.h"

namespace veldra::platform {

// Windows has no SIGPIPE: a write to a pipe whose reader is gone already fails with an error.
void ignore_broken_pipes() {}

}  // namespace veldra::platform
