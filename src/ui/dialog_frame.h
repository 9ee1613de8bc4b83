#pragma once
// What every in-game dialog draws with: the window that holds it (centred, over a dimmed screen,
// in front of menus and with the keyboard), one function for all its texts, and buttons.
// A DialogFrame records what the dialog in front drew in the last frame (its texts and where
// each labelled item was) so tests and automation can read and click what a user would.

#include <imgui.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace veldra {

struct DialogRect {
    float x = 0, y = 0, w = 0, h = 0;  // logical pixels
};

struct DialogFrame {
    std::string window_id;  // the Dear ImGui window of this dialog, one per dialog
    // False in a dialog's first frame: the key press that made the game ask must not answer too.
    bool keys_live = false;
    std::vector<std::string> texts;                         // markup removed, in drawing order
    std::vector<std::pair<std::string, DialogRect>> items;  // labelled items, in drawing order

    // Whether one of the texts contains `fragment`.
    bool shows(std::string_view fragment) const;
    std::optional<DialogRect> item(std::string_view label) const;
};

// Opens the dialog's window, `width` logical pixels wide and `height` high (0: as high as its
// content). Every begin_dialog_window is closed by end_dialog_window.
void begin_dialog_window(const DialogFrame& frame, float width, float height);
void end_dialog_window();

// Every text of a dialog goes through here: markup allowed, "\n" breaks lines, wrapped to the
// dialog's width.
void dialog_text(DialogFrame& frame, std::string_view markup);
// dialog_text in the colour of a refusal or a failure.
void dialog_warning(DialogFrame& frame, std::string_view markup);
// Records the last Dear ImGui item under `label`.
void remember_item(DialogFrame& frame, std::string label);
// A row of buttons at the right edge; the index of the one pressed this frame, or -1.
int dialog_buttons(DialogFrame& frame, const std::vector<std::string>& labels);
// A key went down this frame (Enter includes the keypad's); never in a dialog's first frame.
bool dialog_key_pressed(const DialogFrame& frame, ImGuiKey key);

}  // namespace veldra
