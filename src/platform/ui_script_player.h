#pragma once
// Plays a UI script (ui/ui_script_commands.h) into the game window as real input events: waits
// for menus and dialogs, clicks, slides, keys and typing, frame by frame as a hand would. It
// reads and clicks whichever overlay is in front (ui/overlay.h), by what its controls read.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "runtime/instance.h"
#include "runtime/object_type.h"
#include "ui/control_record.h"
#include "ui/ui_script_commands.h"

namespace veldra {

namespace platform {

class GameWindow;

// What a script needs of the program beyond its window.
struct UiScriptHooks {
    std::function<void(int status)> end;  // ends the program with `status`
    std::function<void()> quit;           // what the window's close button does
};

class obj_ui_script : public Instance {
    VELDRA_OBJECT(obj_ui_script, Instance)
public:
    obj_ui_script(UiScriptHooks hooks, GameWindow& window, std::vector<UiCommand> commands)
        : hooks_(std::move(hooks)), window_(window), commands_(std::move(commands)) {}
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
    // Presses the control of the overlay in front that reads `text`, in the middle or, on a
    // slider's bar, where `slider_value` is.
    bool click_control(const std::string& text, ControlPart part,
                       std::optional<double> slider_value);
    void fail(const UiCommand& command, const std::string& why);

    UiScriptHooks hooks_;
    GameWindow& window_;
    std::vector<UiCommand> commands_;
    std::size_t next_ = 0;
    std::int64_t frames_in_command_ = 0;
    int phase_ = 0;
    std::optional<std::size_t> screenshot_command_;  // waiting to hear whether it was saved
};

}  // namespace platform
}  // namespace veldra
