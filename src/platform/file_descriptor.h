#pragma once
// An owned file descriptor, and the reads and writes the program does on pipes. Writes retry
// after partial writes and signals, so a caller only learns of real failures (a reader gone).

#include <cstddef>
#include <optional>
#include <string_view>

namespace veldra::platform {

class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int fd) : fd_(fd) {}
    ~FileDescriptor() { close(); }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    FileDescriptor(FileDescriptor&& other) noexcept : fd_(other.release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;

    int get() const { return fd_; }
    bool is_open() const { return fd_ >= 0; }
    void close();
    // Gives up ownership: the caller closes the returned descriptor.
    int release();

private:
    int fd_ = -1;
};

// Writes every byte; false when the descriptor cannot take them (for a pipe: its reader is
// gone, which needs SIGPIPE ignored to be reported rather than fatal).
bool write_all(int fd, std::string_view bytes);

// One read of at most `size` bytes: the count read, 0 at the end of the input, nullopt on an
// error. Blocks only when nothing is available yet.
std::optional<std::size_t> read_some(int fd, char* buffer, std::size_t size);

}  // namespace veldra::platform
