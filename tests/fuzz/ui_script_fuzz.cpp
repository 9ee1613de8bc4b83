// The UI-script reader: it accepts a script or names the line it refuses, and every command it
// accepts is complete (a key command has a key the game knows, counts are not negative).
#include "fuzz/fuzz_support.h"
#include "ui/ui_script_commands.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veldra;
    fuzzing::FuzzScope scope;
    std::string error;
    const auto commands = parse_ui_script(std::string(fuzzing::as_text(data, size)), error);
    if (!commands) {
        if (error.rfind("line ", 0) != 0)
            __builtin_trap();
        return 0;
    }
    for (const UiCommand& command : *commands) {
        if (command.line <= 0 || command.count < 0 || command.key >= Key::count)
            __builtin_trap();
        const bool needs_text =
            command.kind == UiCommand::Kind::wait || command.kind == UiCommand::Kind::click ||
            command.kind == UiCommand::Kind::type || command.kind == UiCommand::Kind::screenshot;
        if (needs_text && command.text.empty())
            __builtin_trap();
    }
    return 0;
}
