#pragma once
// The only state in the program that code reaches without being handed it. Everything else (the
// entity runtime, the configuration, the trial, the services) is a named member of the
// simulation state or the application state and is passed by reference to whatever needs it.
//
// What is here is needed at depths where nobody owns the caller: a log line written by a file
// reader or a formula compiler, a dynamic struct made inside a JSON conversion that must join a
// collector, a promise settled in a callback that must find its settings, a shipped file found
// from a loader that only knows its name, and the seed source start-up draws from. Each is a
// plain pointer or value, set by the program (or a test) and read here; nothing is created on
// first use.

#include <filesystem>
#include <random>

#include "runtime/log.h"
#include "runtime/promise_settings.h"

namespace veldra {

namespace detail {
class Collector;
}

struct ProcessState {
    // Where log lines go; none means stderr, without markup.
    LogSink* log_sink = nullptr;
    // The collector new structs and methods join; none means they are freed by count only.
    detail::Collector* collector = nullptr;
    PromiseSettings promises;
    // The folder of the program, for the data directory; empty means the working directory.
    std::filesystem::path program_directory;
    // The engine's random source: only ever used to make seeds.
    std::mt19937_64 random{0};
};

ProcessState& process_state();

}  // namespace veldra
