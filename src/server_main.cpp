#include "server/run_server.h"

int main(int argc, char** argv) {
    return veldra::run_server(argc, argv);
}
