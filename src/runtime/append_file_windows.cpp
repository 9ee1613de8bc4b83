// The Windows side of AppendFile (append_file_posix.cpp: the POSIX one). The file is held as a
// C runtime descriptor over a Win32 handle, so the class is the same on both systems.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <system_error>
#include <utility>

#include "runtime/append_file.h"
#include "runtime/utf16.h"
#include "runtime/windows_error.h"
#include "runtime/windows_file_names.h"

namespace veldra {

namespace {

// More files of one stem than anybody makes in a second: a folder that has them all is broken.
constexpr int MAX_FREE_NAME_TRIES = 10000;

// A descriptor of a new file, or -1 with the reason in `code`. Others may read it while the
// session writes (a researcher looking at the records), never write it.
int open_exclusively(const std::filesystem::path& path, DWORD& code) {
    const HANDLE handle = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                      CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        code = GetLastError();
        return -1;
    }
    const int fd = _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_BINARY);
    if (fd < 0) {
        code = ERROR_TOO_MANY_OPEN_FILES;
        CloseHandle(handle);
    }
    return fd;
}

bool name_taken(DWORD code) {
    return code == ERROR_FILE_EXISTS || code == ERROR_ALREADY_EXISTS;
}

HANDLE handle_of(int fd) {
    return reinterpret_cast<HANDLE>(_get_osfhandle(fd));
}

}  // namespace

std::optional<AppendFile> AppendFile::create_new(const std::string& path, std::string& error) {
    if (auto problem = windows_file_name_problem(path)) {
        error = std::move(*problem);
        return std::nullopt;
    }
    DWORD code = 0;
    const int fd = open_exclusively(utf8_to_utf16(path), code);
    if (fd < 0) {
        error =
            name_taken(code) ? "a file of that name is already there" : windows_error_text(code);
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
        const std::filesystem::path path = folder / utf8_to_utf16(name);
        DWORD code = 0;
        const int fd = open_exclusively(path, code);
        if (fd >= 0)
            return AppendFile(fd, utf16_to_utf8(path.wstring()));
        if (!name_taken(code)) {
            error = windows_error_text(code);
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
            _close(fd_);
        fd_ = std::exchange(other.fd_, -1);
        path_ = std::move(other.path_);
        size_ = other.size_;
    }
    return *this;
}

AppendFile::~AppendFile() {
    if (fd_ >= 0)
        _close(fd_);
}

std::string AppendFile::append(std::string_view bytes) {
    const HANDLE handle = handle_of(fd_);
    std::size_t written = 0;
    DWORD code = 0;
    // Nobody else may write the file, so it ends where the last append left it.
    LARGE_INTEGER end{};
    end.QuadPart = size_;
    if (!SetFilePointerEx(handle, end, nullptr, FILE_BEGIN))
        code = GetLastError();
    while (code == 0 && written < bytes.size()) {
        const DWORD want =
            static_cast<DWORD>(std::min<std::size_t>(bytes.size() - written, 1u << 30));
        DWORD wrote = 0;
        if (!WriteFile(handle, bytes.data() + written, want, &wrote, nullptr) || wrote == 0) {
            code = GetLastError();
            break;
        }
        written += wrote;
    }
    if (code == 0 && !FlushFileBuffers(handle))
        code = GetLastError();
    if (code != 0) {
        // Half a line would run into the next one: a reader must only ever see whole ones.
        FILE_END_OF_FILE_INFO whole{};
        whole.EndOfFile.QuadPart = size_;
        if (!SetFileInformationByHandle(handle, FileEndOfFileInfo, &whole, sizeof whole))
            return windows_error_text(code) + ", and the file may end in a partial piece";
        return windows_error_text(code);
    }
    size_ += static_cast<long long>(bytes.size());
    return {};
}

}  // namespace veldra
