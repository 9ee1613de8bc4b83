#include <charconv>
#include <cmath>

#include "devtools/debug_command_handlers.h"

namespace veldra {

std::optional<double> parse_number_argument(const std::string& word) {
    double value = 0;
    const char* end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    if (error != std::errc() || stop != end || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<long long> parse_integer_argument(const std::string& word) {
    long long value = 0;
    const char* end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return value;
}

std::optional<long long> parse_id_arguments(DebugCommandArgs args) {
    // The kind word is what EID prints before the number; it only helps the reader.
    if (args.empty() || args.size() > 2)
        return std::nullopt;
    return parse_integer_argument(args.back());
}

std::vector<std::string> error_output(const std::string& message) {
    return {DEBUG_ERROR_COLOR + message + "[/c]"};
}

DebugCommandOutput command_help(SimulationState&, DebugCommandArgs args) {
    if (args.size() > 1)
        return std::nullopt;
    std::vector<std::string> lines;
    if (args.size() == 1) {
        const DebugCommand* command = find_debug_command(args[0]);
        if (!command)
            return error_output("Unknown command \"" + args[0] + "\". Type help for the list.");
        lines.push_back(std::string("[#88ccff]") + command->usage + "[/c]");
        lines.emplace_back(command->help);
        return lines;
    }
    for (const DebugCommand& command : debug_commands())
        lines.push_back(std::string("[#88ccff]") + command.usage + "[/c]  " + command.help);
    return lines;
}

}  // namespace veldra
