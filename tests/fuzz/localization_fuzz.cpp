// The language file reader.
#include "config/localization.h"
#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veldra;
    fuzzing::FuzzScope scope;
    const auto language = parse_language(fuzzing::as_text(data, size), "fuzz.ini");
    if (language && !language->lines.empty())
        (void)language->get(language->lines.begin()->first, {"a", "b"});
    return 0;
}
