#pragma once
// The tops of the file system a file dialog offers: on Windows each drive ("C:\", "D:\"), so a
// file on a USB stick or a network drive can be reached by clicking; elsewhere "/" alone.

#include <string>
#include <vector>

namespace veldra {

std::vector<std::string> drive_roots();

}  // namespace veldra
