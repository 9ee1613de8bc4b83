#pragma once
// veldra-server from its command line to its exit status: 0 after a clean stop or a finished
// export or backup, 1 when it cannot start or its work fails, 2 for a wrong command line.

namespace veldra {

int run_server(int argc, char** argv);

}  // namespace veldra
