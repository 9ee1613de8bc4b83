#include <windows.h>

#include <string>

#include "platform/executable_path.h"

namespace veldra::platform {

std::optional<std::filesystem::path> executable_path() {
    // The wide call, so a program unpacked into a folder named "Jürgen" still finds itself;
    // the buffer grows until the whole path fits (paths may exceed MAX_PATH).
    std::wstring buffer(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
        if (length == 0)
            return std::nullopt;
        if (length < buffer.size()) {
            buffer.resize(length);
            return std::filesystem::path(buffer);
        }
        buffer.resize(buffer.size() * 2);
    }
}

}  // namespace veldra::platform
