#include "startup/obj_init.h"

#include <sys/utsname.h>

#include "async/promise.h"
#include "config/debug_settings.h"
#include "config/game_configurations.h"
#include "config/localization.h"
#include "config/logger.h"
#include "config/program_parameters.h"
#include "net/api_env.h"
#include "runtime/callstack.h"
#include "runtime/context.h"
#include "runtime/file_io.h"
#include "runtime/log.h"
#include "runtime/random_source.h"
#include "runtime/services.h"
#include "startup/program.h"
#include "startup/run_mode.h"
#include "trials/game_systems.h"
#include "util/text.h"
#include "veldra_version.h"

#ifndef VELDRA_BUILD_CONFIGURATION
#define VELDRA_BUILD_CONFIGURATION "Default"
#endif

namespace veldra {

namespace {

// The system's name and version as its users know it ("Debian GNU/Linux 12 (bookworm)"), from
// os-release; the kernel's name and release only where that file is missing.
std::string os_type_to_string() {
    for (const char* path : {"/etc/os-release", "/usr/lib/os-release"}) {
        const FileText text = read_whole_file(path, MAX_SETTINGS_FILE_BYTES);
        if (!text)
            continue;
        for (const std::string& line : string_split(*text.text, '\n')) {
            if (!line.starts_with("PRETTY_NAME="))
                continue;
            std::string name = string_trim(line.substr(12));
            if (name.size() >= 2 && (name.front() == '"' || name.front() == '\''))
                name = name.substr(1, name.size() - 2);
            if (!name.empty())
                return name;
        }
    }
    utsname name{};
    if (uname(&name) != 0)
        return "unknown -1";
    return std::string(name.sysname) + " " + name.release;
}

// A desktop program runs in no browser; the runtime reports that as -1.
std::string os_browser_to_string() {
    return "not_a_browser -1";
}

void log_start_up_lines() {
    log("Program started.");
    log(std::string("Build version: ") + BUILD_VERSION);
    log(std::string("Build configuration: ") + VELDRA_BUILD_CONFIGURATION);
    log("Debug mode: true");
    log("os_type: " + os_type_to_string());
    log("os_browser: " + os_browser_to_string());
}

void choose_language() {
    initialize_localization();
    std::optional<std::string> language = program_params().lang;
    if (!language)
        language = _debug_ask_localization();
    load_and_set_localization(language.value_or("en"));
}

}  // namespace

void obj_init::on_create() {
    VELDRA_SCOPE();
    randomize();
    promises_set_uncaught_handler(log_uncaught_rejection);
    program_params() = get_program_parameters(ctx().slot<ProgramArguments>().arguments);
    if (auto* terminal = dynamic_cast<StderrTerminal*>(services().terminal.get()))
        terminal->verbose = program_params().verbose == "1";
    initialize_log();
    initialize_api_env();
    log_start_up_lines();
    load_active_debug_settings();
    choose_language();
    initialize_game_systems();
    reload_game_configurations();
    choose_run_mode();
}

}  // namespace veldra
