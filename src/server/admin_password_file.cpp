#include "server/admin_password_file.h"

#include "runtime/file_io.h"
#include "util/text.h"

namespace veldra {

AdminPasswordRead read_admin_password_file(const std::string& path) {
    const FileText file = read_whole_file(path, MAX_SETTINGS_FILE_BYTES);
    if (!file)
        return AdminPasswordRead{.password = std::nullopt,
                                 .error = "admin password file \"" + path + "\": " + file.error};
    const std::string& text = *file.text;
    std::string password(string_trim(text.substr(0, text.find('\n'))));
    if (password.size() < 8)
        return AdminPasswordRead{
            .password = std::nullopt,
            .error = "admin password file \"" + path +
                     "\": its first line must hold a password of at least 8 characters"};
    return AdminPasswordRead{.password = std::move(password), .error = {}};
}

}  // namespace veldra
