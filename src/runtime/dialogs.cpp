#include "runtime/dialogs.h"

#include <cstdio>

#include "runtime/log.h"

namespace veldra {

void ScriptedDialogs::answer_next(std::string_view question, const DialogAnswer& answer) {
    questions_asked.emplace_back(question);
    std::optional<std::string> next;
    if (!answers.empty()) {
        next = std::move(answers.front());
        answers.pop_front();
    }
    if (answer)
        answer(std::move(next));
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
