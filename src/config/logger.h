#pragma once
// The logger entity: stamps every line with the local date and time, prints it with its colour
// markup on the developer terminal, and copies it without markup into the file named by
// log_output_file. File output is batched: one write-out every 60 steps, and one at clean-up,
// so logging inside the frame loop costs no file access per line.

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "runtime/instance.h"
#include "runtime/log.h"
#include "runtime/services.h"

namespace veldra {

inline constexpr const char* LOG_WARNING_PREFIX = "[#dddd55]Warning:[/c] ";
inline constexpr const char* LOG_ERROR_PREFIX = "[#dd5555]Error:[/c] ";
inline constexpr int LOG_DUMP_INTERVAL_STEPS = 60;

// The logger's global switch and its once-only flag.
struct LoggerState {
    bool initialized = false;
    // When true, warnings and errors also open a modal message with the plain text.
    bool scream_log_errors = false;
};

class obj_logger : public Instance, public LogSink {
    VELDRA_OBJECT(obj_logger, Instance)
public:
    obj_logger(const LoggerState& state, std::optional<std::string> output_filename)
        : output_filename(std::move(output_filename)), state_(state) {}
    ~obj_logger() override;

    void on_create() override;
    void on_step() override;
    void on_clean_up() override;
    void write(LogLevel level, std::string_view message) override;

    std::string _make_timestamp() const;
    void _dump();

    std::optional<std::string> output_filename;
    std::vector<std::string> output_file_log_buffer;
    int dump_timer = LOG_DUMP_INTERVAL_STEPS;

private:
    // Says once on stderr that the log file gets nothing, and why, and stops writing to it:
    // the terminal may be all a user sees, and a log lost without a word is worse than none.
    void give_up_output_file(const std::string& reason);

    const LoggerState& state_;
    std::FILE* output_file = nullptr;
};

// "2024_03_07_09_05_41": one-digit parts get a leading zero, the year stays as it is.
std::string make_log_timestamp(const LocalDateTime& when);

// "20240307-090541", the stamp in the names of files a run leaves beside its log; `between`
// separates the date from the time.
std::string make_file_name_stamp(const LocalDateTime& when, char between = '-');

// The folder of the files that belong to this run (session autosaves, recordings): the log
// file's folder when the log is a plain file (or is yet to be made), else the working directory
// (""). A log sent to a device or a pipe (/dev/full, /dev/stdout into a pipe) has no folder of
// its own worth writing into: the run's files must not end up in /dev.
std::filesystem::path folder_beside_log(const std::optional<std::string>& log_output_file);

// Where a file named `name` that belongs to this run goes: in folder_beside_log.
std::string path_beside_log(const std::optional<std::string>& log_output_file,
                            const std::string& name);

// Creates the persistent logger in `runtime` and makes it the log's sink; it copies lines into
// `output_filename` when one is given. Once-only.
void initialize_log(Runtime& runtime, LoggerState& state,
                    const std::optional<std::string>& output_filename);

}  // namespace veldra
