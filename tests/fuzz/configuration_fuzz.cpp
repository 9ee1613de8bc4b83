// The configuration loader with its comment remover, as base file and as overlay.
#include "config/configs_loader.h"
#include "config/json_comments.h"
#include "fuzz/fuzz_support.h"
#include "runtime/files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veldra;
    fuzzing::FuzzScope scope;
    const std::string_view text = fuzzing::as_text(data, size);
    if (_json_remove_comments(text).size() > text.size())
        __builtin_trap();  // comments are only ever cut
    const std::string path = fuzzing::input_file(text, ".json");
    DiskFiles files;
    for (bool base : {true, false}) {
        ExpressionGlobals globals;
        const auto loaded = _load_game_configurations_from_file(files, path, base, globals);
        // A whole file that loads must be usable: its formulas evaluate without a fault. (An
        // overlay's absent keys hold no formula until it is laid over a base file.)
        if (loaded && base) {
            const PersonalityTraits traits{0.5, -0.5, 1, 0, -1};
            (void)loaded->trial_score(traits, 0.5, 0.5);
            (void)loaded->weight_explore(traits, 0.5);
        }
    }
    return 0;
}
