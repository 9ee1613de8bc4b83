#pragma once
// Sleeping until one of several pipes has something to say, instead of looking at each in
// turn on a timer: a parent of several processes wakes as soon as any of them answers.

#include <chrono>
#include <cstddef>
#include <span>
#include <vector>

namespace veldra::platform {

// Waits until at least one of `fds` can be read without blocking (it holds data, its writer
// has closed it, or it is in error, which a read then reports), `timeout` passes, or a signal
// arrives. Returns the positions in `fds` of those that can be read: none after a timeout or a
// signal, so a caller checks its signal flags on every return.
std::vector<std::size_t> wait_for_input(std::span<const int> fds,
                                        std::chrono::milliseconds timeout);

}  // namespace veldra::platform
