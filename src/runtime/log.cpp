#include "runtime/log.h"

#include <cstdio>

#include "runtime/process_state.h"
#include "runtime/text_tags.h"

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

std::string remove_text_tags(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (const std::optional<TextTag> tag = read_text_tag(text.substr(i))) {
            i += tag->length - 1;
            continue;
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
