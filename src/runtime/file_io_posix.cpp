// Reading and writing whole files with POSIX calls (file_io_windows.cpp: the Windows ones).
#include "runtime/file_io.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace veldra {

namespace {

// Closes the descriptor on every way out.
class FileDescriptor {
public:
    explicit FileDescriptor(int fd) : fd_(fd) {}
    ~FileDescriptor() {
        if (fd_ >= 0)
            ::close(fd_);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    int get() const { return fd_; }

private:
    int fd_;
};

FileText failure(std::string why) {
    return FileText{std::nullopt, std::move(why)};
}

}  // namespace

FileText read_whole_file(const std::string& path, std::size_t max_bytes) {
    // O_NONBLOCK: opening a FIFO for reading would otherwise wait for a writer forever.
    FileDescriptor fd(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (fd.get() < 0)
        return failure(errno == ENOENT ? FILE_MISSING_REASON : system_error_text(errno));
    struct stat info {};
    if (::fstat(fd.get(), &info) != 0)
        return failure(system_error_text(errno));
    if (S_ISDIR(info.st_mode))
        return failure("is a directory, not a file");
    if (!S_ISREG(info.st_mode))
        return failure("is not a regular file (a device, a pipe or a socket)");
    if (static_cast<unsigned long long>(info.st_size) > max_bytes)
        return failure(file_too_large_reason(max_bytes));
    std::string text;
    text.resize(static_cast<std::size_t>(info.st_size));
    std::size_t filled = 0;
    // The size can change while we read: never take more than the limit allows.
    for (;;) {
        if (filled == text.size()) {
            if (text.size() > max_bytes)
                return failure(file_too_large_reason(max_bytes));
            text.resize(std::min(max_bytes + 1, text.size() + 65536));
        }
        const ssize_t got = ::read(fd.get(), text.data() + filled, text.size() - filled);
        if (got < 0) {
            if (errno == EINTR)
                continue;
            return failure(system_error_text(errno));
        }
        if (got == 0)
            break;
        filled += static_cast<std::size_t>(got);
    }
    text.resize(filled);
    return FileText{std::move(text), {}};
}

std::string write_whole_file(const std::string& path, const std::string& text) {
    // A device or a pipe (/dev/stdout, /dev/null) is written in place: there is nothing to
    // replace, and a temporary file beside it would land in /dev.
    std::error_code ignored;
    const auto status = std::filesystem::status(path, ignored);
    const bool in_place =
        std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
    if (std::filesystem::is_directory(status))
        return "is a directory, not a file";
    const std::string temporary = in_place ? path : path + ".writing";
    std::FILE* out = std::fopen(temporary.c_str(), "wb");
    if (!out)
        return system_error_text(errno);
    bool ok = std::fwrite(text.data(), 1, text.size(), out) == text.size();
    int error_number = ok ? 0 : errno;
    if (std::fflush(out) != 0 && ok) {
        ok = false;
        error_number = errno;
    }
    if (ok && ::fsync(::fileno(out)) != 0 && errno != EINVAL && errno != EROFS) {
        ok = false;
        error_number = errno;
    }
    if (std::fclose(out) != 0 && ok) {
        ok = false;
        error_number = errno;
    }
    if (ok && !in_place && std::rename(temporary.c_str(), path.c_str()) != 0) {
        ok = false;
        error_number = errno;
    }
    if (!ok) {
        if (!in_place)
            std::remove(temporary.c_str());
        return system_error_text(error_number ? error_number : EIO);
    }
    return {};
}

std::FILE* open_file(const std::string& path, const char* mode, std::string& why) {
    std::FILE* file = std::fopen(path.c_str(), mode);
    if (!file)
        why = system_error_text(errno);
    return file;
}

std::string write_all_and_flush(std::FILE* file, std::string_view bytes) {
    errno = 0;
    if (std::fflush(file) != 0)
        return system_error_text(errno ? errno : EIO);
    // Written past the stream's buffer, so that after a failure no piece of `bytes` waits in it
    // to reach the file at the next flush or close.
    const int fd = ::fileno(file);
    const off_t before = ::lseek(fd, 0, SEEK_END);
    for (std::size_t written = 0; written < bytes.size();) {
        const ssize_t wrote = ::write(fd, bytes.data() + written, bytes.size() - written);
        if (wrote < 0 && errno == EINTR)
            continue;
        if (wrote <= 0) {
            const int error_number = wrote < 0 ? errno : EIO;
            // Back to the last whole piece: a reader then finds complete lines only. A device or
            // a pipe cannot be cut; nothing of it can be taken back either.
            if (before >= 0 && ::ftruncate(fd, before) == 0)
                ::lseek(fd, before, SEEK_SET);
            return system_error_text(error_number);
        }
        written += static_cast<std::size_t>(wrote);
    }
    return {};
}

}  // namespace veldra
