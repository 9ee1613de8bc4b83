#pragma once
// Questions to the user and messages for them. A dialog in a window stays open over many frames,
// so every question answers through a callback, on the game thread, once: with the text, or
// with nothing when the user cancels. async/dialog_promises.h turns the answers into promises.
//
// Every backend answers in a frame after the one that asked, never inside the call: a chain
// built on a question then runs in the same order with a window and without, so a headless test
// sees the order of events a participant's window produces.

#include <cstddef>
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
    // The frame loop's call after the draw events, where a window's dialog takes its answer.
    virtual void end_frame() {}
};

// No window: answers come from a script (tests, or answers given on the command line), taken in
// the order the questions come, and given at the end of the frame after the one that asked;
// with no scripted answer a question is cancelled. Messages go to stderr so a shell user sees
// them at once.
class ScriptedDialogs final : public Dialogs {
public:
    void get_string(std::string_view prompt, std::string_view initial,
                    DialogAnswer answer) override;
    void get_open_filename(std::string_view filter, std::string_view initial,
                           std::string_view title, DialogAnswer answer) override;
    void get_save_filename(std::string_view filter, std::string_view initial,
                           std::string_view title, DialogAnswer answer) override;
    void show_message(std::string_view text) override;
    // Gives the answers to the questions of earlier frames; this frame's wait for the next.
    void end_frame() override;
    std::size_t waiting() const { return waiting_.size(); }

    std::deque<std::optional<std::string>> answers;  // consumed front first
    std::deque<std::string> questions_asked;         // the prompts, filters or titles
    std::deque<std::string> messages_shown;
    bool echo_messages_to_stderr = true;

private:
    struct Waiting {
        std::optional<std::string> answer;
        DialogAnswer callback;
        std::size_t asked_in_frame = 0;
    };
    void answer_next(std::string_view question, DialogAnswer answer);

    std::deque<Waiting> waiting_;
    std::size_t frames_ended_ = 0;
};

}  // namespace veldra
