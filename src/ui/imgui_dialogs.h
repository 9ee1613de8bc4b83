#pragma once
// Dialogs in the game's window, drawn with Dear ImGui, so they work in fullscreen, under a
// virtual display and on every platform alike: a question with a text field, file browsers
// to open and save, and messages.
//
// Nothing is answered inside a call: each question joins a queue and is answered from draw(),
// in a later frame, once the user is done with it. One dialog shows at a time, in the order
// asked; messages wait their turn like questions. obj_dialog_host (ui/dialog_host.h) calls
// draw() every frame.

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <string_view>

#include "runtime/dialogs.h"
#include "ui/dialog_frame.h"
#include "ui/dialog_texts.h"

namespace veldra {

class DialogWindow;
class FileBrowser;

class ImGuiDialogs final : public Dialogs {
public:
    ImGuiDialogs();
    ~ImGuiDialogs() override;
    ImGuiDialogs(const ImGuiDialogs&) = delete;
    ImGuiDialogs& operator=(const ImGuiDialogs&) = delete;

    void get_string(std::string_view prompt, std::string_view initial,
                    DialogAnswer answer) override;
    void get_open_filename(std::string_view filter, std::string_view initial,
                           std::string_view title, DialogAnswer answer) override;
    void get_save_filename(std::string_view filter, std::string_view initial,
                           std::string_view title, DialogAnswer answer) override;
    // Also logged, so the message is in the log file whether or not anyone was watching.
    void show_message(std::string_view text) override;

    // Draws the dialog in front and acts on this frame's input; when it is done its answer is
    // given here and the next one shows from the next frame. Call once per frame, inside a
    // Dear ImGui frame.
    void draw();

    // Dialogs showing or waiting, messages included.
    std::size_t waiting() const { return queue_.size(); }
    // What the dialog in front drew in the last frame (nothing drawn: empty).
    const DialogFrame& last_frame() const { return frame_; }
    // The browser of the dialog in front when it is a file dialog.
    const FileBrowser* front_browser() const;
    // The words of dialogs asked from now on (the language is loaded after the window opens).
    void set_texts(DialogTexts texts) { texts_ = std::move(texts); }

private:
    struct Waiting {
        std::unique_ptr<DialogWindow> window;
        DialogAnswer answer;    // empty for messages
        std::string window_id;  // a window of its own, so each dialog starts fresh
        bool shown = false;
    };
    void push(std::unique_ptr<DialogWindow> window, DialogAnswer answer);

    std::deque<Waiting> queue_;
    DialogFrame frame_;
    std::size_t dialogs_made_ = 0;
    DialogTexts texts_;
};

}  // namespace veldra
