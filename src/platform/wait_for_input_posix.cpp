#include "platform/wait_for_input.h"

#include <poll.h>

namespace veldra::platform {

std::vector<std::size_t> wait_for_input(std::span<const int> fds,
                                        std::chrono::milliseconds timeout) {
    std::vector<pollfd> polled;
    polled.reserve(fds.size());
    for (int fd : fds)
        polled.push_back({fd, POLLIN, 0});
    std::vector<std::size_t> ready;
    if (::poll(polled.data(), polled.size(), static_cast<int>(timeout.count())) <= 0)
        return ready;  // a timeout, or a signal (EINTR) the caller wants to look at
    for (std::size_t i = 0; i < polled.size(); ++i)
        if (polled[i].revents != 0)
            ready.push_back(i);
    return ready;
}

}  // namespace veldra::platform
