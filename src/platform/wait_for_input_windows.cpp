#include <io.h>
#include <windows.h>

#include <thread>

#include "platform/wait_for_input.h"

namespace veldra::platform {

namespace {

// An anonymous pipe cannot be waited on together with others, so each is asked in turn. A
// pipe whose writer is gone (or that is broken) counts as readable: its read then reports it.
bool readable(int fd) {
    const HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(fd));
    if (handle == INVALID_HANDLE_VALUE)
        return true;
    DWORD available = 0;
    if (!PeekNamedPipe(handle, nullptr, 0, nullptr, &available, nullptr))
        return true;
    return available > 0;
}

// Short enough that an answer is noticed within a frame, long enough to cost nothing.
constexpr auto POLL_INTERVAL = std::chrono::milliseconds(5);

}  // namespace

std::vector<std::size_t> wait_for_input(std::span<const int> fds,
                                        std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    std::vector<std::size_t> ready;
    for (;;) {
        for (std::size_t i = 0; i < fds.size(); ++i)
            if (readable(fds[i]))
                ready.push_back(i);
        if (!ready.empty() || std::chrono::steady_clock::now() >= deadline)
            return ready;
        std::this_thread::sleep_for(POLL_INTERVAL);
    }
}

}  // namespace veldra::platform
