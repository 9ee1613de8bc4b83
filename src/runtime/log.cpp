#include "runtime/log.h"

#include <cstdio>

#include "runtime/context.h"

namespace veldra {

namespace {
struct LogSlot {
    LogSink* sink = nullptr;
};

void write_line(LogLevel level, std::string_view message) {
    LogSink* sink = has_ctx() ? ctx().slot<LogSlot>().sink : nullptr;
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
    LogSink*& slot = ctx().slot<LogSlot>().sink;
    LogSink* previous = slot;
    slot = sink;
    return previous;
}

std::string remove_text_tags(std::string_view text) {
    // A tag is "[" + a name made of tag characters + "]"; anything else in brackets is text.
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '[') {
            std::size_t end = text.find(']', i + 1);
            if (end != std::string_view::npos && end > i + 1) {
                std::string_view inner = text.substr(i + 1, end - i - 1);
                bool is_tag = true;
                for (char c : inner) {
                    bool ok = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                              (c >= '0' && c <= '9') || c == '#' || c == '/' || c == '_' ||
                              c == ',' || c == '.' || c == '-';
                    if (!ok) {
                        is_tag = false;
                        break;
                    }
                }
                if (is_tag &&
                    (inner[0] == '#' || inner[0] == '/' || (inner[0] >= 'a' && inner[0] <= 'z'))) {
                    i = end;
                    continue;
                }
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
