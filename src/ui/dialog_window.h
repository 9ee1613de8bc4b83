#pragma once
// One in-game dialog: ImGuiDialogs keeps them in a queue and draws the one in front each frame
// until it has its answer.

#include <memory>
#include <optional>
#include <string>

#include "ui/dialog_frame.h"
#include "ui/dialog_texts.h"
#include "ui/file_browser.h"

namespace veldra {

struct DialogOutcome {
    std::optional<std::string> answer;  // nothing: cancelled (or a message, closed)
};

class DialogWindow {
public:
    virtual ~DialogWindow() = default;
    // Draws the dialog and acts on this frame's clicks and keys; the outcome once it is done.
    virtual std::optional<DialogOutcome> draw(DialogFrame& frame) = 0;
    // The file browser behind a file dialog, for tests and automation.
    virtual const FileBrowser* browser() const { return nullptr; }
};

std::unique_ptr<DialogWindow> make_text_dialog(std::string prompt, std::string initial,
                                               const DialogTexts& texts);
std::unique_ptr<DialogWindow> make_message_dialog(std::string text, const DialogTexts& texts);
// `title`: the heading; empty, one that says what the dialog does.
std::unique_ptr<DialogWindow> make_file_dialog(FileBrowserMode mode, std::string_view filter,
                                               std::string_view initial, std::string title,
                                               const DialogTexts& texts);

}  // namespace veldra
