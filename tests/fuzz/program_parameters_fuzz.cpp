// The command line: arguments split at "=", and the parsers of every numeric or switch value.
#include "config/program_parameters.h"
#include "fuzz/fuzz_support.h"
#include "startup/parameter_values.h"
#include "trials/auto_run_plan.h"
#include "util/text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veldra;
    fuzzing::FuzzScope scope;
    // One argument per line, as a shell would pass them.
    const std::vector<std::string> arguments = string_split(fuzzing::as_text(data, size), '\n');
    const ProgramParameters params = get_program_parameters(arguments);
    for (const std::string& argument : arguments) {
        (void)parse_seed_value(argument);
        (void)parse_switch_value(argument);
        (void)parse_traits_value(argument);
        (void)try_string_to_whole_number(argument, 1, 256);
        if (const auto shard = parse_shard(argument))
            if (shard->first < 1 || shard->first > shard->second)
                __builtin_trap();
    }
    (void)params;
    return 0;
}
