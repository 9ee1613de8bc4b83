#pragma once
// What every in-game dialog draws with: the window that holds it (centred, over a dimmed screen,
// in front of menus and with the keyboard), one function for all its texts, and buttons.
// A DialogFrame records what the dialog in front drew in the last frame (its texts and where
// each labelled item was) so tests and automation can read and click what a user would. Keys,
// buttons and style are the overlays' (ui/overlay_input.h, ui/overlay_style.h).

#include <imgui.h>

#include <string>
#include <string_view>
#include <vector>

#include "ui/control_record.h"
#include "ui/overlay_input.h"

namespace veldra {

using DialogRect = ControlRect;

// What the dialog in front drew (its texts and controls) is the record tests and UI scripts read.
struct DialogFrame : ControlRecord {
    std::string window_id;  // the Dear ImGui window of this dialog, one per dialog
    // False in a dialog's first frame: the key press that made the game ask must not answer too.
    bool keys_live = false;

    OverlayKeys keys() const { return OverlayKeys(keys_live); }
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
// A row of buttons at the right edge; the index of the one pressed this frame, or -1.
int dialog_buttons(DialogFrame& frame, const std::vector<std::string>& labels);

}  // namespace veldra
