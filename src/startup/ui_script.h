#pragma once
// UI scripts: a text file of waits, clicks, keys and typing that the program plays into its own
// window as real input events, so a whole session can be driven without a person (windowed
// tests, a demonstration on a screen). One command a line; "#" starts a comment:
//
//   wait TEXT        until the dialog in front, or else the top menu, shows a text holding TEXT
//                    (markup removed): a menu entry, a dialog's title or message
//   click LABEL      moves to the entry LABEL of the dialog in front (its buttons, "name" and
//                    "path" for a file dialog's fields) or else of the top menu, presses and
//                    releases the mouse there
//   slide VALUE LABEL  presses the mouse on the slider of the top menu's entry LABEL where
//                    VALUE is, and releases it
//   box LABEL        clicks into the number box of the top menu's field or slider LABEL, so
//                    that "type" replaces its value
//   key NAME         presses and releases a key (enter, escape, tab, space, backspace, up,
//                    down, left, right, w, a, s, d, p, plus, minus, f11, f12)
//   hold NAME N      holds a key down for N frames
//   type TEXT        types TEXT into whatever has the keyboard
//   frames N         waits N frames
//   screenshot FILE  writes the frame about to be shown as a PNG
//   quit             closes the window as its close button does
//
// A wait or a click that does not find its text within a minute stops the program with an error
// naming the line. While a script runs, the window takes no input from the display: neither a
// person's nor another window's pointer and focus changes. A program that ends before its script
// is done (frames= ran out, the window was closed) logs the line it was on and exits with 1, as
// does a script whose screenshot cannot be written.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "runtime/input.h"
#include "runtime/instance.h"
#include "runtime/object_type.h"
#include "ui/popup_menu.h"

namespace veldra {

struct AppState;
namespace platform {
class GameWindow;
}

struct UiCommand {
    enum class Kind { wait, click, slide, box, key, hold, type, frames, screenshot, quit };
    Kind kind = Kind::frames;
    std::string text;  // wait, click, slide, box, type, screenshot
    double value = 0;  // slide
    Key key = Key::enter;
    long count = 0;      // hold, frames
    int line = 0;        // in the file, for messages
    std::string source;  // the line as written, for messages
};

// The commands of a script's text; nullopt with `error` naming the line of the first bad one.
std::optional<std::vector<UiCommand>> parse_ui_script(const std::string& text, std::string& error);

class obj_ui_script : public Instance {
    VELDRA_OBJECT(obj_ui_script, Instance)
public:
    obj_ui_script(AppState& app, platform::GameWindow& window, std::vector<UiCommand> commands)
        : app_(app), window_(window), commands_(std::move(commands)) {}
    void on_create() override { persistent = true; }
    void on_step_begin() override;
    // Logs the line the script was still on when the program ended without finishing it, so a
    // failed windowed test or demonstration says where it stopped; false in that case. A script
    // that ends the program while it pauses ("frames") has finished.
    bool report_unfinished();

private:
    // Ends the program (status 1) when the screenshot the script asked for last was not saved.
    bool screenshot_failed();
    bool run(const UiCommand& command);  // true once the command is done
    bool press_at(float x, float y);
    bool click_menu_part(const std::string& text, obj_popup_menu::Part part,
                         std::optional<double> slider_value);
    void fail(const UiCommand& command, const std::string& why);

    AppState& app_;
    platform::GameWindow& window_;
    std::vector<UiCommand> commands_;
    std::size_t next_ = 0;
    long frames_in_command_ = 0;
    int phase_ = 0;
    std::optional<std::size_t> screenshot_command_;  // waiting to hear whether it was saved
};

}  // namespace veldra
