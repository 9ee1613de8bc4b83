#include "platform/program_arguments.h"

namespace veldra::platform {

std::vector<std::string> program_arguments(int argc, char** argv) {
    return std::vector<std::string>(argv, argv + argc);
}

}  // namespace veldra::platform
