#include "runtime/services.h"

#include <cstdio>

#include "runtime/context.h"

namespace veldra {

Services& services() {
    return ctx().slot<Services>();
}

LocalDateTime FrameClock::local_now() const {
    return wall_clock_ ? wall_clock_() : LocalDateTime{1970, 1, 1, 0, 0, 0};
}

std::optional<std::string> ScriptedDialogs::next_answer() {
    if (answers.empty())
        return std::nullopt;
    auto answer = answers.front();
    answers.pop_front();
    return answer;
}

std::optional<std::string> ScriptedDialogs::get_string(std::string_view, std::string_view) {
    return next_answer();
}

std::optional<std::string> ScriptedDialogs::get_open_filename(std::string_view, std::string_view) {
    return next_answer();
}

std::optional<std::string> ScriptedDialogs::get_save_filename(std::string_view, std::string_view,
                                                              std::string_view) {
    return next_answer();
}

void ScriptedDialogs::show_message(std::string_view text) {
    messages_shown.emplace_back(text);
    if (echo_messages_to_stderr) {
        std::string plain = remove_text_tags(text);
        std::fprintf(stderr, "%s\n", plain.c_str());
    }
}

void StderrTerminal::println(LogLevel level, std::string_view line) {
    if (level == LogLevel::info && !verbose)
        return;
    std::string plain = remove_text_tags(line);
    std::fprintf(stderr, "%s\n", plain.c_str());
}

}  // namespace veldra
