#pragma once
// Paths from and to the program's UTF-8 text. Building a std::filesystem::path from a plain
// std::string reads its bytes in the system's narrow encoding; on Windows that is not UTF-8, so
// "Jürgen" would reach the system as "JÃ¼rgen" and name a folder that does not exist. Every path
// made from the program's text goes through utf8_path, and every path shown or stored as text
// through path_utf8; on Linux both are plain copies.

#include <filesystem>
#include <string>
#include <string_view>

namespace veldra {

std::filesystem::path utf8_path(std::string_view text);
std::string path_utf8(const std::filesystem::path& path);

}  // namespace veldra
