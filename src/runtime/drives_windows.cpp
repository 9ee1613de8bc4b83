#include <windows.h>

#include "runtime/drives.h"

namespace veldra {

std::vector<std::string> drive_roots() {
    std::vector<std::string> roots;
    const DWORD present = GetLogicalDrives();
    for (int letter = 0; letter < 26; ++letter)
        if (present & (DWORD{1} << letter))
            roots.push_back(std::string(1, static_cast<char>('A' + letter)) + ":\\");
    return roots;
}

}  // namespace veldra
