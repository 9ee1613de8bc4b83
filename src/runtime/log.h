#pragma once
// The game's only diagnostics channel. The logger entity (config/logger.h) installs itself as
// the sink; until one is installed, lines go to stderr with their colour markup removed, which
// is what tests and tools that never start the logger want.

#include <string>
#include <string_view>
#include <vector>

namespace veldra {

enum class LogLevel { info, warning, error };

class LogSink {
public:
    virtual ~LogSink() = default;
    virtual void write(LogLevel level, std::string_view message) = 0;
};

void log(std::string_view message);
void log_warning(std::string_view message);
void log_error(std::string_view message);

// Replaces the process's log sink; returns the previous one (nullptr: stderr).
LogSink* set_log_sink(LogSink* sink);

// Removes the text markup's tags (runtime/text_tags.h) such as "[#dd5555]", "[b]", "[/c]" or
// "[pin_center]"; other bracketed text stays.
std::string remove_text_tags(std::string_view text);

// Collects every line logged while it lives; for tests.
class LogCapture final : public LogSink {
public:
    LogCapture();
    ~LogCapture() override;
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    void write(LogLevel level, std::string_view message) override;
    bool contains(std::string_view fragment) const;
    std::size_t count(std::string_view fragment) const;

    struct Line {
        LogLevel level;
        std::string message;
    };
    std::vector<Line> lines;

private:
    LogSink* previous_;
};

}  // namespace veldra
