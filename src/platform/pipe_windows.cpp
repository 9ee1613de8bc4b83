#include <fcntl.h>
#include <io.h>

#include "platform/pipe.h"

namespace veldra::platform {

std::optional<Pipe> Pipe::create() {
    int ends[2];
    // Binary, or the C runtime would turn "\n" into "\r\n" on the way; not inherited, like
    // the close-on-exec ends of the POSIX build.
    if (_pipe(ends, 65536, _O_BINARY | _O_NOINHERIT) != 0)
        return std::nullopt;
    return Pipe(ends[0], ends[1]);
}

}  // namespace veldra::platform
