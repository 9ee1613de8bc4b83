#include "platform/png_file.h"
#include "runtime/file_io.h"
#include "runtime/utf8_path.h"

#include <stb_image_write.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <vector>

namespace veldra::platform {

namespace {

namespace fs = std::filesystem;

bool check_destination(const std::string& path, std::string& error) {
    if (path.empty()) {
        error = "no file name was given for the screenshot";
        return false;
    }
    std::error_code ec;
    if (fs::is_directory(utf8_path(path), ec)) {
        error = "\"" + path + "\" is a folder, not a file name";
        return false;
    }
    const fs::path folder = utf8_path(path).parent_path();
    if (!folder.empty() && !fs::is_directory(folder, ec)) {
        error = fs::exists(folder, ec) ? "\"" + path_utf8(folder) + "\" is not a folder"
                                       : "the folder \"" + path_utf8(folder) + "\" does not exist";
        return false;
    }
    return true;
}

}  // namespace

bool write_png_file(const std::string& path, int width, int height,
                    std::span<const std::uint8_t> rgba, std::string& error) {
    if (width <= 0 || height <= 0 ||
        rgba.size() != static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4) {
        error = "there is no picture to save";
        return false;
    }
    if (!check_destination(path, error))
        return false;
    std::vector<std::uint8_t> encoded;
    encoded.reserve(rgba.size() / 4);
    const int ok = stbi_write_png_to_func(
        [](void* context, void* data, int size) {
            auto* out = static_cast<std::vector<std::uint8_t>*>(context);
            auto* bytes = static_cast<const std::uint8_t*>(data);
            out->insert(out->end(), bytes, bytes + size);
        },
        &encoded, width, height, 4, rgba.data(), width * 4);
    if (!ok) {
        error = "cannot encode the screenshot as PNG";
        return false;
    }
    std::string why;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(open_file(path, "wb", why), std::fclose);
    if (!file) {
        error = "cannot write \"" + path + "\": " + why;
        return false;
    }
    if (std::fwrite(encoded.data(), 1, encoded.size(), file.get()) != encoded.size() ||
        std::fclose(file.release()) != 0) {
        error = "cannot write \"" + path + "\": " + std::strerror(errno);
        return false;
    }
    return true;
}

}  // namespace veldra::platform
