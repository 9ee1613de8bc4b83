#include "config/logger.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "runtime/callstack.h"
#include "runtime/file_io.h"
#include "runtime/once.h"
#include "runtime/runtime.h"
#include "runtime/utf8_path.h"

namespace veldra {

namespace {
std::string two_digits(int value) {
    return value < 10 ? "0" + std::to_string(value) : std::to_string(value);
}
}  // namespace

std::string make_log_timestamp(const LocalDateTime& when) {
    return std::to_string(when.year) + "_" + two_digits(when.month) + "_" + two_digits(when.day) +
           "_" + two_digits(when.hour) + "_" + two_digits(when.minute) + "_" +
           two_digits(when.second);
}

std::string make_file_name_stamp(const LocalDateTime& when, char between) {
    char text[32];
    std::snprintf(text, sizeof text, "%04d%02d%02d%c%02d%02d%02d", when.year, when.month, when.day,
                  between, when.hour, when.minute, when.second);
    return text;
}

std::filesystem::path folder_beside_log(const std::optional<std::string>& log_output_file) {
    if (!log_output_file || log_output_file->empty())
        return {};
    // Links resolved first: /dev/stdout redirected into a file is that file, in its folder.
    std::error_code error;
    std::filesystem::path log =
        std::filesystem::weakly_canonical(utf8_path(*log_output_file), error);
    if (error)
        log = *log_output_file;
    const auto status = std::filesystem::status(log, error);
    const bool plain_file = status.type() == std::filesystem::file_type::regular ||
                            status.type() == std::filesystem::file_type::not_found;
    return plain_file ? utf8_path(*log_output_file).parent_path() : std::filesystem::path();
}

std::string path_beside_log(const std::optional<std::string>& log_output_file,
                            const std::string& name) {
    return path_utf8(folder_beside_log(log_output_file) / utf8_path(name));
}

void initialize_log(Runtime& runtime, LoggerState& state,
                    const std::optional<std::string>& output_filename) {
    VELDRA_SCOPE();
    if (!once_only_first_call(state.initialized))
        return;
    state.scream_log_errors = false;
    auto& logger = runtime.instance_create<obj_logger>(0, 0, "Instances", state, output_filename);
    logger.persistent = true;
}

obj_logger::~obj_logger() {
    if (output_file)
        std::fclose(output_file);
    // A runtime ended without its clean-up events must not leave the log writing here.
    if (LogSink* sink = set_log_sink(nullptr); sink != this)
        set_log_sink(sink);
}

void obj_logger::on_create() {
    if (output_filename) {
        std::string why;
        output_file = open_file(*output_filename, "wb", why);
        if (!output_file)
            give_up_output_file(why);
    }
    dump_timer = LOG_DUMP_INTERVAL_STEPS;
    set_log_sink(this);
}

void obj_logger::on_step() {
    if (--dump_timer <= 0) {
        _dump();
        dump_timer = LOG_DUMP_INTERVAL_STEPS;
    }
}

void obj_logger::on_clean_up() {
    _dump();
    if (output_file) {
        std::fclose(output_file);
        output_file = nullptr;
    }
    // Later lines (from other clean-up events) still reach stderr.
    set_log_sink(nullptr);
}

std::string obj_logger::_make_timestamp() const {
    return make_log_timestamp(runtime().services().clock->local_now());
}

void obj_logger::write(LogLevel level, std::string_view message) {
    const char* prefix = level == LogLevel::error     ? LOG_ERROR_PREFIX
                         : level == LogLevel::warning ? LOG_WARNING_PREFIX
                                                      : "";
    std::string line = _make_timestamp() + " " + prefix + std::string(message);
    Services& services = runtime().services();
    services.terminal->println(level, line);
    if (level != LogLevel::info && state_.scream_log_errors)
        services.dialogs->show_message(remove_text_tags(line));
    if (output_file)
        output_file_log_buffer.push_back(remove_text_tags(line));
}

void obj_logger::_dump() {
    if (!output_file || !output_filename)
        return;
    std::string text;
    for (const auto& line : output_file_log_buffer)
        text += line + "\n";
    output_file_log_buffer.clear();
    std::string error = write_all_and_flush(output_file, text);
    // Closing and reopening puts the lines on disk, so a crash loses at most one batch.
    if (std::fclose(output_file) != 0 && error.empty())
        error = system_error_text(errno);
    output_file = nullptr;
    if (error.empty()) {
        output_file = open_file(*output_filename, "ab", error);
    }
    if (!error.empty())
        give_up_output_file(error);
}

void obj_logger::give_up_output_file(const std::string& reason) {
    if (output_file)
        std::fclose(output_file);
    output_file = nullptr;
    output_file_log_buffer.clear();
    std::fprintf(stderr,
                 "Cannot write the log file log_output_file=%s: %s. The log goes on without it.\n",
                 output_filename->c_str(), reason.c_str());
}

}  // namespace veldra
