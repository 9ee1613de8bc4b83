#include "startup/run_program.h"

int main(int argc, char** argv) {
    return veldra::run_program(argc, argv);
}
