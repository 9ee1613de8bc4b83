// Reading and writing whole files with Windows calls (file_io_posix.cpp: the POSIX ones). Paths
// are the program's UTF-8 and reach the system as UTF-16, so any folder name works; the C
// runtime's narrow calls would read them in the user's code page instead.
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "runtime/file_io.h"
#include "runtime/utf16.h"
#include "runtime/windows_error.h"
#include "runtime/windows_file_names.h"

namespace veldra {

namespace {

// Closes the handle on every way out.
class FileHandle {
public:
    explicit FileHandle(HANDLE handle) : handle_(handle) {}
    ~FileHandle() {
        if (is_open())
            CloseHandle(handle_);
    }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    HANDLE get() const { return handle_; }
    bool is_open() const { return handle_ != INVALID_HANDLE_VALUE; }
    // False when closing failed: the last of the data may not have reached the disk.
    bool close() {
        const bool closed = CloseHandle(handle_) != 0;
        handle_ = INVALID_HANDLE_VALUE;
        return closed;
    }

private:
    HANDLE handle_;
};

FileText failure(std::string why) {
    return FileText{std::nullopt, std::move(why)};
}

bool is_missing(DWORD code) {
    return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
}

}  // namespace

FileText read_whole_file(const std::string& path, std::size_t max_bytes) {
    if (auto problem = windows_file_name_problem(path))
        return failure(std::move(*problem));
    const std::wstring wide = utf8_to_utf16(path);
    // Shared for writing and deleting: another program holding the file open (an editor, a
    // virus scanner) must not make it unreadable.
    FileHandle file(CreateFileW(wide.c_str(), GENERIC_READ,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!file.is_open()) {
        const DWORD code = GetLastError();
        return failure(is_missing(code) ? FILE_MISSING_REASON : windows_error_text(code));
    }
    BY_HANDLE_FILE_INFORMATION info{};
    if (!GetFileInformationByHandle(file.get(), &info))
        return failure(windows_error_text(GetLastError()));
    if (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
        return failure("is a directory, not a file");
    if (GetFileType(file.get()) != FILE_TYPE_DISK)
        return failure("is not a regular file (a device, a pipe or a socket)");
    const unsigned long long size =
        (static_cast<unsigned long long>(info.nFileSizeHigh) << 32) | info.nFileSizeLow;
    if (size > max_bytes)
        return failure(file_too_large_reason(max_bytes));
    std::string text;
    text.resize(static_cast<std::size_t>(size));
    std::size_t filled = 0;
    // The size can change while we read: never take more than the limit allows.
    for (;;) {
        if (filled == text.size()) {
            if (text.size() > max_bytes)
                return failure(file_too_large_reason(max_bytes));
            text.resize(std::min(max_bytes + 1, text.size() + 65536));
        }
        const DWORD want =
            static_cast<DWORD>(std::min<std::size_t>(text.size() - filled, 1u << 30));
        DWORD got = 0;
        if (!ReadFile(file.get(), text.data() + filled, want, &got, nullptr))
            return failure(windows_error_text(GetLastError()));
        if (got == 0)
            break;
        filled += got;
    }
    text.resize(filled);
    return FileText{std::move(text), {}};
}

std::string write_whole_file(const std::string& path, const std::string& text) {
    if (auto problem = windows_file_name_problem(path))
        return *problem;
    const std::filesystem::path target(utf8_to_utf16(path));
    std::error_code ignored;
    const auto status = std::filesystem::status(target, ignored);
    if (std::filesystem::is_directory(status))
        return "is a directory, not a file";
    // A device (NUL, CON) is written in place: there is nothing to replace.
    const bool in_place =
        std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
    const std::wstring temporary = in_place ? target.wstring() : target.wstring() + L".writing";
    FileHandle file(CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, nullptr,
                                in_place ? OPEN_EXISTING : CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                nullptr));
    if (!file.is_open())
        return windows_error_text(GetLastError());
    DWORD code = 0;
    for (std::size_t written = 0; written < text.size() && code == 0;) {
        const DWORD want =
            static_cast<DWORD>(std::min<std::size_t>(text.size() - written, 1u << 30));
        DWORD wrote = 0;
        if (!WriteFile(file.get(), text.data() + written, want, &wrote, nullptr))
            code = GetLastError();
        written += wrote;
    }
    if (code == 0 && !in_place && !FlushFileBuffers(file.get()))
        code = GetLastError();
    if (!file.close() && code == 0)
        code = GetLastError();
    // WRITE_THROUGH: the rename is on disk before it returns, like the bytes before it.
    if (code == 0 && !in_place &&
        !MoveFileExW(temporary.c_str(), target.c_str(),
                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        code = GetLastError();
    if (code != 0) {
        if (!in_place)
            DeleteFileW(temporary.c_str());
        return windows_error_text(code);
    }
    return {};
}

std::FILE* open_file(const std::string& path, const char* mode, std::string& why) {
    if (auto problem = windows_file_name_problem(path)) {
        why = std::move(*problem);
        return nullptr;
    }
    std::FILE* file = _wfopen(utf8_to_utf16(path).c_str(), utf8_to_utf16(mode).c_str());
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
    const HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)));
    if (handle == INVALID_HANDLE_VALUE)
        return system_error_text(EBADF);
    LARGE_INTEGER before{};
    const LARGE_INTEGER zero{};
    const bool can_cut =
        GetFileType(handle) == FILE_TYPE_DISK && SetFilePointerEx(handle, zero, &before, FILE_END);
    for (std::size_t written = 0; written < bytes.size();) {
        const DWORD want =
            static_cast<DWORD>(std::min<std::size_t>(bytes.size() - written, 1u << 30));
        DWORD wrote = 0;
        if (!WriteFile(handle, bytes.data() + written, want, &wrote, nullptr) || wrote == 0) {
            const DWORD code = GetLastError();
            // Back to the last whole piece: a reader then finds complete lines only.
            if (can_cut && SetFilePointerEx(handle, before, nullptr, FILE_BEGIN))
                SetEndOfFile(handle);
            return windows_error_text(code);
        }
        written += wrote;
    }
    return {};
}

}  // namespace veldra
