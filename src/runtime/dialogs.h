#pragma once
// Questions to the user and messages for them. A dialog in a window stays open over many frames,
// so every question answers through a callback, on the game thread, once: with the text, or
// with nothing when the user cancels. async/dialog_promises.h turns the answers into promises.

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace veldra {

using DialogAnswer = std::function<void(std::optional<std::string> answer)>;

class Dialogs {
public:
    virtual ~Dialogs() = default;
    virtual void get_string(std::string_view prompt, std::string_view initial,
                            DialogAnswer answer) = 0;
    virtual void get_open_filename(std::string_view filter, std::string_view initial,
                                   std::string_view title, DialogAnswer answer) = 0;
    virtual void get_save_filename(std::string_view filter, std::string_view initial,
                                   std::string_view title, DialogAnswer answer) = 0;
    virtual void show_message(std::string_view text) = 0;
};

// No window: answers come from a script (tests, or answers given on the command line), at once,
// inside the call; with no scripted answer every question is cancelled. Messages go to stderr
// so a shell user sees them.
class ScriptedDialogs final : public Dialogs {
public:
    void get_string(std::string_view prompt, std::string_view initial,
                    DialogAnswer answer) override;
    void get_open_filename(std::string_view filter, std::string_view initial,
                           std::string_view title, DialogAnswer answer) override;
    void get_save_filename(std::string_view filter, std::string_view initial,
                           std::string_view title, DialogAnswer answer) override;
    void show_message(std::string_view text) override;

    std::deque<std::optional<std::string>> answers;  // consumed front first
    std::deque<std::string> questions_asked;         // the prompts, filters or titles
    std::deque<std::string> messages_shown;
    bool echo_messages_to_stderr = true;

private:
    void answer_next(std::string_view question, const DialogAnswer& answer);
};

}  // namespace veldra
