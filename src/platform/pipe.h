#pragma once
// A pipe whose two ends close when it goes away. Both ends are close-on-exec, so a child
// process holds only the ends handed to it explicitly (child_process.h), and the parent's end
// reports the end of input as soon as the child is gone.

#include <optional>

#include "platform/file_descriptor.h"

namespace veldra::platform {

class Pipe {
public:
    // nullopt, with errno set, when the system has no descriptors left.
    static std::optional<Pipe> create();

    ~Pipe() = default;
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    Pipe(Pipe&&) noexcept = default;
    Pipe& operator=(Pipe&&) noexcept = default;

    // Either end may be closed or moved out on its own; the other stays open.
    FileDescriptor& read_end() { return read_end_; }
    FileDescriptor& write_end() { return write_end_; }

private:
    Pipe(int read_fd, int write_fd) : read_end_(read_fd), write_end_(write_fd) {}

    FileDescriptor read_end_;
    FileDescriptor write_end_;
};

}  // namespace veldra::platform
