#pragma once
// The language of UI scripts: a text file of waits, clicks, keys and typing that the program plays
// into its own window as real input events, so a whole session can be driven without a person
// (windowed tests, a demonstration on a screen). One command a line; "#" starts a comment:
//
//   wait TEXT        until the dialog in front, or else the top menu, or else one of the
//                    developer panels shows a text holding TEXT (markup removed): a menu entry,
//                    a dialog's title or message
//   click LABEL      moves to the entry LABEL of the dialog in front (its buttons, "name" and
//                    "path" for a file dialog's fields) or else of the top menu or of a
//                    developer panel, presses and releases the mouse there
//   slide VALUE LABEL  presses the mouse on the slider of the top menu's entry LABEL where
//                    VALUE is, and releases it
//   box LABEL        clicks into the number box of the top menu's field or slider LABEL, so
//                    that "type" replaces its value
//   key NAME         presses and releases a key (enter, escape, tab, space, backspace, up,
//                    down, left, right, w, a, s, d, p, plus, minus, f11, f12, ctrl);
//                    "key ctrl+NAME" presses NAME while Control is held (ctrl+d)
//   hold NAME N      holds a key down for N frames
//   type TEXT        types TEXT into whatever has the keyboard
//   frames N         waits N frames
//   screenshot FILE  writes the frame about to be shown as a PNG
//   wait_file FILE   until FILE exists: another program (a test stopping a server, say) says
//                    it is done; with "screenshot" before it, the script can say it is ready
//   quit             closes the window as its close button does
//
// A wait or a click that does not find its text within a minute stops the program with an error
// naming the line. While a script runs, the window takes no input from the display: neither a
// person's nor another window's pointer and focus changes. A program that ends before its script
// is done (frames= ran out, the window was closed) logs the line it was on and exits with 1, as
// does a script whose screenshot cannot be written.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "runtime/input.h"

namespace veldra {

struct UiCommand {
    enum class Kind {
        wait,
        wait_file,
        click,
        slide,
        box,
        key,
        hold,
        type,
        frames,
        screenshot,
        quit
    };
    Kind kind = Kind::frames;
    std::string text;  // wait, wait_file, click, slide, box, type, screenshot
    double value = 0;  // slide
    Key key = Key::enter;
    bool with_ctrl = false;  // key: Control is held around it
    std::int64_t count = 0;  // hold, frames
    int line = 0;            // in the file, for messages
    std::string source;      // the line as written, for messages
};

// The commands of a script's text; nullopt with `error` naming the line of the first bad one.
std::optional<std::vector<UiCommand>> parse_ui_script(const std::string& text, std::string& error);

}  // namespace veldra
