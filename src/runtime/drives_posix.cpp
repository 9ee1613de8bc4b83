#include "runtime/drives.h"

namespace veldra {

std::vector<std::string> drive_roots() {
    return {"/"};
}

}  // namespace veldra
