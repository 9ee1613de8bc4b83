#include "runtime/dialogs.h"

#include <cstdio>

#include "runtime/log.h"

namespace veldra {

void ScriptedDialogs::answer_next(std::string_view question, DialogAnswer answer) {
    questions_asked.emplace_back(question);
    std::optional<std::string> next;
    if (!answers.empty()) {
        next = std::move(answers.front());
        answers.pop_front();
    }
    waiting_.push_back({std::move(next), std::move(answer), frames_ended_});
}

void ScriptedDialogs::end_frame() {
    // An answer may ask again; that question is this frame's and waits behind the loop's end.
    while (!waiting_.empty() && waiting_.front().asked_in_frame < frames_ended_) {
        Waiting next = std::move(waiting_.front());
        waiting_.pop_front();
        if (next.callback)
            next.callback(std::move(next.answer));
    }
    ++frames_ended_;
}

void ScriptedDialogs::get_string(std::string_view prompt, std::string_view, DialogAnswer answer) {
    answer_next(prompt, answer);
}

void ScriptedDialogs::get_open_filename(std::string_view filter, std::string_view, std::string_view,
                                        DialogAnswer answer) {
    answer_next(filter, answer);
}

void ScriptedDialogs::get_save_filename(std::string_view, std::string_view, std::string_view title,
                                        DialogAnswer answer) {
    answer_next(title, answer);
}

void ScriptedDialogs::show_message(std::string_view text) {
    messages_shown.emplace_back(text);
    if (echo_messages_to_stderr) {
        std::string plain = remove_text_tags(text);
        std::fprintf(stderr, "%s\n", plain.c_str());
    }
}

}  // namespace veldra
