#include "runtime/append_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "runtime/file_io.h"

namespace veldra {

namespace {

// More files of one stem than anybody makes in a second: a folder that has them all is broken.
constexpr int MAX_FREE_NAME_TRIES = 10000;

int open_exclusively(const std::string& path) {
    int fd = -1;
    do
        fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, 0666);
    while (fd < 0 && errno == EINTR);
    return fd;
}

std::string creation_problem(int error_number) {
    return error_number == EEXIST ? "a file of that name is already there"
                                  : system_error_text(error_number);
}

}  // namespace

std::optional<AppendFile> AppendFile::create_new(const std::string& path, std::string& error) {
    const int fd = open_exclusively(path);
    if (fd < 0) {
        error = creation_problem(errno);
        return std::nullopt;
    }
    return AppendFile(fd, path);
}

std::optional<AppendFile> AppendFile::create_with_free_name(const std::filesystem::path& folder,
                                                            const std::string& stem,
                                                            const std::string& extension,
                                                            std::string& error) {
    for (int number = 1; number <= MAX_FREE_NAME_TRIES; ++number) {
        const std::string name =
            stem + (number == 1 ? "" : "-" + std::to_string(number)) + extension;
        const std::string path = (folder / name).string();
        const int fd = open_exclusively(path);
        if (fd >= 0)
            return AppendFile(fd, path);
        if (errno != EEXIST) {
            error = system_error_text(errno);
            return std::nullopt;
        }
    }
    error = "every name from " + stem + extension + " to " + stem + "-" +
            std::to_string(MAX_FREE_NAME_TRIES) + extension + " is taken";
    return std::nullopt;
}

AppendFile::AppendFile(AppendFile&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)), path_(std::move(other.path_)), size_(other.size_) {}

AppendFile& AppendFile::operator=(AppendFile&& other) noexcept {
    if (this != &other) {
        if (fd_ >= 0)
            ::close(fd_);
        fd_ = std::exchange(other.fd_, -1);
        path_ = std::move(other.path_);
        size_ = other.size_;
    }
    return *this;
}

AppendFile::~AppendFile() {
    if (fd_ >= 0)
        ::close(fd_);
}

std::string AppendFile::append(std::string_view bytes) {
    std::size_t written = 0;
    int error_number = 0;
    while (written < bytes.size()) {
        const ssize_t got = ::write(fd_, bytes.data() + written, bytes.size() - written);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0) {
            error_number = got < 0 ? errno : EIO;
            break;
        }
        written += static_cast<std::size_t>(got);
    }
    if (!error_number && ::fsync(fd_) != 0 && errno != EINVAL && errno != EROFS)
        error_number = errno;
    if (error_number) {
        // Half a line would run into the next one: a reader must only ever see whole ones.
        if (::ftruncate(fd_, static_cast<off_t>(size_)) != 0)
            return system_error_text(error_number) + ", and the file may end in a partial piece";
        return system_error_text(error_number);
    }
    size_ += static_cast<long long>(bytes.size());
    return {};
}

}  // namespace veldra
