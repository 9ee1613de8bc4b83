// The level-set generator file reader, and a small generation from what it accepts.
#include <nlohmann/json.hpp>

#include "fuzz/fuzz_support.h"
#include "runtime/files.h"
#include "world/level_cell_types.h"
#include "world/level_set_generator.h"

namespace {

// Files the reader accepts may still ask for a thousand levels of 1000 x 1000 cells, which is
// legal and slow; the fuzzer keeps to inputs that generate in a moment.
bool small_enough(std::string_view text) {
    const auto json = nlohmann::json::parse(text, nullptr, false, true);
    if (!json.is_object())
        return true;
    for (const char* key : {"width", "height", "count"}) {
        const auto it = json.find(key);
        if (it != json.end() && it->is_number() && it->get<double>() > 12)
            return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veldra;
    const std::string_view text = fuzzing::as_text(data, size);
    if (!small_enough(text))
        return 0;
    fuzzing::FuzzScope scope;
    LevelCellTypeTable types;
    initialize_level_cell_types(types);
    const std::string path = fuzzing::input_file(text, ".json");
    DiskFiles files;
    (void)generate_level_set(files, types, path, path + ".levels", std::nullopt);
    return 0;
}
