#pragma once
// Shared by the libFuzzer harnesses: every input runs with a collector of its own and its log
// collected and dropped (a fuzzer prints nothing but its findings), and readers of files get the
// input as a file of this process's own.

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "runtime/gc.h"
#include "runtime/log.h"

namespace veldra::fuzzing {

struct FuzzScope {
    GcScope collector;
    LogCapture capture;
};

inline std::string_view as_text(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// Writes the input to /tmp/veldra_fuzz_<pid><suffix>, the same path for every input.
inline std::string input_file(std::string_view text, const char* suffix) {
    const std::string path = "/tmp/veldra_fuzz_" + std::to_string(::getpid()) + std::string(suffix);
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file) {
        std::fwrite(text.data(), 1, text.size(), file);
        std::fclose(file);
    }
    return path;
}

}  // namespace veldra::fuzzing
