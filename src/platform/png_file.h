#pragma once
// Screenshots on disk.

#include <cstdint>
#include <span>
#include <string>

namespace veldra::platform {

// Writes `width` x `height` pixels, bytes R, G, B, A row by row, as a PNG at `path`. False with
// a message a player can act on when the folder is missing, the path is a folder or the file
// cannot be written.
bool write_png_file(const std::string& path, int width, int height,
                    std::span<const std::uint8_t> rgba, std::string& error);

}  // namespace veldra::platform
