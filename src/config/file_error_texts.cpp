#include "config/file_error_texts.h"

#include <cerrno>
#include <string_view>
#include <utility>

#include "config/text_ids.h"
#include "runtime/file_io.h"

namespace veldra {

std::string file_error_text(const Localization& localization, const std::string& reason) {
    // The writers word a folder's name themselves; the rest is the system's text of the error.
    if (reason == "is a directory, not a file" || reason == system_error_text(EISDIR)) {
        const std::string text = text_of(localization, lid::FileError_IsFolder);
        return text.empty() ? reason : text;
    }
    const std::pair<int, std::string_view> known[] = {
        {ENOENT, lid::FileError_NoFolder},     {ENOTDIR, lid::FileError_NoFolder},
        {EACCES, lid::FileError_NoPermission}, {EPERM, lid::FileError_NoPermission},
        {ENOSPC, lid::FileError_DiskFull},     {EROFS, lid::FileError_ReadOnly},
#ifdef EDQUOT  // disk quotas: POSIX only; Windows reports a full quota as a full disk
        {EDQUOT, lid::FileError_DiskFull},
#endif
    };
    for (const auto& [code, lid] : known)
        if (reason == system_error_text(code)) {
            const std::string text = text_of(localization, lid);
            return text.empty() ? reason : text;
        }
    return reason;
}

}  // namespace veldra
