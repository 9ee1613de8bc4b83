// The input-recording reader: whatever it accepts is written back and read again unchanged.
#include "fuzz/fuzz_support.h"
#include "trials/input_record.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veldra;
    fuzzing::FuzzScope scope;
    std::string why;
    const auto record = input_record_parse(fuzzing::as_text(data, size), why);
    if (!record) {
        if (why.empty())
            __builtin_trap();
        return 0;
    }
    const std::string text = input_record_to_text(*record);
    const auto again = input_record_parse(text, why);
    if (!again || input_record_to_text(*again) != text || again->commands != record->commands ||
        again->traits != record->traits || again->seed != record->seed)
        __builtin_trap();
    return 0;
}
