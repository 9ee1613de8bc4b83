#include "runtime/log.h"

#include <cctype>
#include <cstdio>

#include "runtime/process_state.h"

namespace veldra {

namespace {
void write_line(LogLevel level, std::string_view message) {
    LogSink* sink = process_state().log_sink;
    if (sink) {
        sink->write(level, message);
        return;
    }
    const char* label = level == LogLevel::error     ? "Error: "
                        : level == LogLevel::warning ? "Warning: "
                                                     : "";
    std::string plain = remove_text_tags(message);
    std::fprintf(stderr, "%s%s\n", label, plain.c_str());
}
}  // namespace

void log(std::string_view message) {
    write_line(LogLevel::info, message);
}
void log_warning(std::string_view message) {
    write_line(LogLevel::warning, message);
}
void log_error(std::string_view message) {
    write_line(LogLevel::error, message);
}

LogSink* set_log_sink(LogSink* sink) {
    LogSink*& slot = process_state().log_sink;
    LogSink* previous = slot;
    slot = sink;
    return previous;
}

namespace {

// The markup the game writes: colours by "#" and hex digits or by name, layout, and the ends
// "[/c]" and "[/]". Only these are tags, so a bracketed word in a message (a file's
// "[localization]" section, a formula's "a[i]") is left as written.
bool is_text_tag(std::string_view inner) {
    static constexpr std::string_view NAMES[] = {
        "/",     "/c",   "pin_left", "pin_center", "pin_right", "slant", "bold",  "italic", "red",
        "green", "blue", "yellow",   "orange",     "purple",    "white", "black", "gray",   "grey",
        "lime",  "aqua", "fuchsia",  "silver",     "maroon",    "navy",  "olive", "teal",
    };
    if (inner.size() > 1 && inner[0] == '#') {
        for (char c : inner.substr(1))
            if (!std::isxdigit(static_cast<unsigned char>(c)))
                return false;
        return inner.size() == 4 || inner.size() == 7 || inner.size() == 9;
    }
    for (std::string_view name : NAMES)
        if (inner == name)
            return true;
    return false;
}

}  // namespace

std::string remove_text_tags(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '[') {
            const std::size_t end = text.find(']', i + 1);
            if (end != std::string_view::npos && is_text_tag(text.substr(i + 1, end - i - 1))) {
                i = end;
                continue;
            }
        }
        out.push_back(text[i]);
    }
    return out;
}

LogCapture::LogCapture() : previous_(set_log_sink(this)) {}
LogCapture::~LogCapture() {
    set_log_sink(previous_);
}

void LogCapture::write(LogLevel level, std::string_view message) {
    lines.push_back({level, std::string(message)});
}

bool LogCapture::contains(std::string_view fragment) const {
    return count(fragment) > 0;
}

std::size_t LogCapture::count(std::string_view fragment) const {
    std::size_t n = 0;
    for (const auto& line : lines)
        if (line.message.find(fragment) != std::string::npos)
            ++n;
    return n;
}

}  // namespace veldra
