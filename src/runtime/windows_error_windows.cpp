#include <windows.h>

#include <cerrno>
#include <system_error>

#include "runtime/file_io.h"
#include "runtime/windows_error.h"

namespace veldra {

namespace {

int posix_equivalent(DWORD code) {
    switch (code) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
            return ENOENT;
        case ERROR_ACCESS_DENIED:
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
            return EACCES;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            return ENOSPC;
        case ERROR_WRITE_PROTECT:
            return EROFS;
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
            return EEXIST;
        case ERROR_DIRECTORY:
            return ENOTDIR;
        case ERROR_FILENAME_EXCED_RANGE:
            return ENAMETOOLONG;
        case ERROR_TOO_MANY_OPEN_FILES:
            return EMFILE;
        case ERROR_NOT_ENOUGH_MEMORY:
        case ERROR_OUTOFMEMORY:
            return ENOMEM;
        default:
            return 0;
    }
}

}  // namespace

std::string windows_error_text(unsigned long code) {
    if (const int error_number = posix_equivalent(code))
        return system_error_text(error_number);
    return std::system_category().message(static_cast<int>(code));
}

}  // namespace veldra
