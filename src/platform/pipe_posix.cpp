#include "platform/pipe.h"

#include <fcntl.h>
#include <unistd.h>

namespace veldra::platform {

std::optional<Pipe> Pipe::create() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return std::nullopt;
    return Pipe(ends[0], ends[1]);
}

}  // namespace veldra::platform
