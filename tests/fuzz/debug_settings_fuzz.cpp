// The debug settings reader.
#include "config/debug_settings.h"
#include "fuzz/fuzz_support.h"
#include "runtime/files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veldra;
    fuzzing::FuzzScope scope;
    const std::string path = fuzzing::input_file(fuzzing::as_text(data, size), ".json");
    DiskFiles files;
    (void)_load_debug_settings_from_file(files, path);
    return 0;
}
