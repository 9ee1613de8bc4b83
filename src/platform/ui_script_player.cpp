#include "platform/ui_script_player.h"

#include <filesystem>
#include <system_error>

#include "platform/game_window.h"
#include "runtime/log.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "runtime/utf8_path.h"
#include "ui/overlay.h"

namespace veldra::platform {

namespace {

// A minute of frames: long enough for a trial to end, short enough for a stuck test to fail.
constexpr long WAIT_LIMIT_FRAMES = 60 * 60;

}  // namespace

void obj_ui_script::fail(const UiCommand& command, const std::string& why) {
    log_error("UI script, line " + std::to_string(command.line) + " (" + command.source +
              "): " + why);
    next_ = commands_.size();
    hooks_.end(1);
}

bool obj_ui_script::screenshot_failed() {
    if (!screenshot_command_)
        return false;
    const std::string error = window_.take_screenshot_error();
    const UiCommand& command = commands_[*screenshot_command_];
    screenshot_command_.reset();
    if (error.empty())
        return false;
    // Like screenshot= on the command line: a demonstration or test that meant to keep a picture
    // and has none has failed.
    fail(command, "the screenshot \"" + command.text + "\" was not saved: " + error + ".");
    return true;
}

bool obj_ui_script::report_unfinished() {
    if (screenshot_failed())
        return false;
    const std::string ignored = window_.ignored_input_summary();
    if (!ignored.empty())
        log("UI script: input from the display was ignored: " + ignored + ".");
    // A script may well end the program while it pauses.
    if (next_ >= commands_.size() || commands_[next_].kind == UiCommand::Kind::frames)
        return true;
    const UiCommand& command = commands_[next_];
    const std::size_t left = commands_.size() - next_ - 1;
    log_warning("UI script: the program ended on line " + std::to_string(command.line) + " (" +
                command.source + "), after " + std::to_string(frames_in_command_) +
                " frames there; " + std::to_string(left) + (left == 1 ? " command" : " commands") +
                " after it did not run.");
    return false;
}

// Runs before the frame's other steps, so what it pushes is read by the next frame's poll.
void obj_ui_script::on_step_begin() {
    if (screenshot_failed())
        return;
    if (next_ >= commands_.size())
        return;
    const UiCommand& command = commands_[next_];
    if (run(command)) {
        ++next_;
        frames_in_command_ = 0;
        phase_ = 0;
        return;
    }
    if (++frames_in_command_ > WAIT_LIMIT_FRAMES && command.kind != UiCommand::Kind::frames &&
        command.kind != UiCommand::Kind::hold)
        fail(command, "\"" + command.text + "\" did not appear within a minute.");
}

// Hover first, then press, then release: what a hand does, frame by frame. True once released.
bool obj_ui_script::press_at(float x, float y) {
    if (phase_ == 0)
        window_.inject_mouse_move(x, y);
    else if (phase_ == 1)
        window_.inject_mouse_button(true, x, y);
    else
        window_.inject_mouse_button(false, x, y);
    return ++phase_ > 2;
}

bool obj_ui_script::click_control(const std::string& text, ControlPart part,
                                  std::optional<double> slider_value) {
    const DrawnControl* control = nullptr;
    for (const obj_overlay* overlay : overlays_taking_input(runtime()))
        if ((control = overlay->controls().find_shown(text, part)))
            break;
    if (!control || control->rect.w <= 0 || control->rect.h <= 0)
        return false;  // not drawn yet, or no such part
    const ControlRect& r = control->rect;
    const float x = slider_value ? slider_value_x(*control, *slider_value) : r.x + r.w / 2;
    return press_at(x, r.y + r.h / 2);
}

bool obj_ui_script::run(const UiCommand& command) {
    using Kind = UiCommand::Kind;
    switch (command.kind) {
        case Kind::wait: {
            for (const obj_overlay* overlay : overlays_taking_input(runtime()))
                if (overlay->controls().shows(command.text))
                    return true;
            return false;
        }
        case Kind::wait_file: {
            std::error_code ignored;
            return std::filesystem::exists(utf8_path(command.text), ignored);
        }
        case Kind::click:
            return click_control(command.text, ControlPart::whole, std::nullopt);
        case Kind::slide:
            return click_control(command.text, ControlPart::bar, command.value);
        case Kind::box:
            return click_control(command.text, ControlPart::box, std::nullopt);
        case Kind::key:
            if (command.with_ctrl) {
                // Control down, the key down and up, Control up: one event a frame.
                if (phase_ == 0 || phase_ == 3)
                    window_.inject_key(Key::ctrl, phase_ == 0);
                else
                    window_.inject_key(command.key, phase_ == 1, true);
                return ++phase_ > 3;
            }
            window_.inject_key(command.key, phase_ == 0);
            return ++phase_ > 1;
        case Kind::hold:
            if (phase_ == 0)
                window_.inject_key(command.key, true);
            if (phase_ >= command.count) {
                window_.inject_key(command.key, false);
                return true;
            }
            ++phase_;
            return false;
        case Kind::type:
            window_.inject_text(command.text);
            return true;
        case Kind::frames:
            return frames_in_command_ >= command.count;
        case Kind::screenshot:
            // Mid-frame the menus of the last frame are gone; the frame about to be shown has them.
            // Whether it was written is known once that frame is shown.
            window_.request_screenshot(command.text);
            screenshot_command_ = static_cast<std::size_t>(&command - commands_.data());
            return true;
        case Kind::quit:
            hooks_.quit();
            return true;
    }
    return true;
}

}  // namespace veldra::platform
