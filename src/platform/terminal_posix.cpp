#include "platform/terminal.h"

#include <unistd.h>

namespace veldra::platform {

bool stderr_is_terminal() {
    return isatty(STDERR_FILENO) == 1;
}

}  // namespace veldra::platform
