#include "platform/file_descriptor.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace veldra::platform {

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    if (this != &other) {
        close();
        fd_ = other.release();
    }
    return *this;
}

void FileDescriptor::close() {
    if (fd_ >= 0)
        ::close(fd_);
    fd_ = -1;
}

int FileDescriptor::release() {
    return std::exchange(fd_, -1);
}

bool write_all(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

std::optional<std::size_t> read_some(int fd, char* buffer, std::size_t size) {
    for (;;) {
        const ssize_t got = ::read(fd, buffer, size);
        if (got >= 0)
            return static_cast<std::size_t>(got);
        if (errno != EINTR)
            return std::nullopt;
    }
}

}  // namespace veldra::platform
