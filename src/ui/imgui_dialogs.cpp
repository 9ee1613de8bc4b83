#include "ui/imgui_dialogs.h"

#include <string>
#include <utility>

#include "runtime/log.h"
#include "ui/dialog_window.h"

namespace veldra {

ImGuiDialogs::ImGuiDialogs() = default;
ImGuiDialogs::~ImGuiDialogs() = default;

void ImGuiDialogs::push(std::unique_ptr<DialogWindow> window, DialogAnswer answer) {
    ++dialogs_made_;
    queue_.push_back(
        {std::move(window), std::move(answer), "##dialog" + std::to_string(dialogs_made_), false});
}

void ImGuiDialogs::get_string(std::string_view prompt, std::string_view initial,
                              DialogAnswer answer) {
    push(make_text_dialog(std::string(prompt), std::string(initial), texts_), std::move(answer));
}

void ImGuiDialogs::get_open_filename(std::string_view filter, std::string_view initial,
                                     std::string_view title, DialogAnswer answer) {
    push(make_file_dialog(FileBrowserMode::open, filter, initial, std::string(title), texts_),
         std::move(answer));
}

void ImGuiDialogs::get_save_filename(std::string_view filter, std::string_view initial,
                                     std::string_view title, DialogAnswer answer) {
    push(make_file_dialog(FileBrowserMode::save, filter, initial, std::string(title), texts_),
         std::move(answer));
}

void ImGuiDialogs::show_message(std::string_view text) {
    log("Message shown: " + std::string(text));
    push(make_message_dialog(std::string(text), texts_), nullptr);
}

const FileBrowser* ImGuiDialogs::front_browser() const {
    return queue_.empty() ? nullptr : queue_.front().window->browser();
}

void ImGuiDialogs::draw() {
    frame_ = DialogFrame{};
    if (queue_.empty())
        return;
    Waiting& front = queue_.front();
    frame_.window_id = front.window_id;
    frame_.keys_live = front.shown;
    front.shown = true;
    std::optional<DialogOutcome> outcome = front.window->draw(frame_);
    if (!outcome)
        return;
    // Off the queue before answering: the answer may well ask the next question.
    DialogAnswer answer = std::move(front.answer);
    queue_.pop_front();
    if (answer)
        answer(std::move(outcome->answer));
}

}  // namespace veldra
