#include "platform/console.h"

namespace veldra::platform {

// A POSIX program always has the standard streams its parent gave it.
void use_parent_console() {}

}  // namespace veldra::platform
