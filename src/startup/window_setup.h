#pragma once
// Whether this run shows a window, and opening it: the modes a person watches (play_level,
// replay) open one unless headless=1; every other mode runs headless. Interactive trials then
// get their views (world, HUD, controls) through the simulation's create_trial_views, and the
// game's questions and messages become in-game dialogs (ui/dialog_host.h).

#include <memory>
#include <optional>
#include <string>

#include "config/program_parameters.h"

namespace veldra {

struct AppState;
namespace platform {
class GameWindow;
}

// The sizes window_size= accepts. The largest is an 8K screen: every frame is drawn (and a
// screenshot read back) at the window's size, and beyond a real screen that costs seconds and
// gigabytes for a picture nobody can see whole.
inline constexpr int MIN_WINDOW_WIDTH = 320;
inline constexpr int MIN_WINDOW_HEIGHT = 180;
inline constexpr int MAX_WINDOW_WIDTH = 7680;
inline constexpr int MAX_WINDOW_HEIGHT = 4320;

// Settings of the window read from the command line; a bad value is reported with the
// parameter's name in `error`.
struct WindowRequest {
    bool wanted = false;
    double volume = 1;
    std::optional<double> camera_zoom;  // none: the views choose; 0: fit the whole level
    bool developer_keys = false;
    bool pace_frames = true;
    bool replaying = false;  // the player's commands come from a recording
    int width = 1600;
    int height = 900;
};
std::optional<WindowRequest> read_window_request(const ProgramParameters& params,
                                                 std::string& error);

// Opens the window into the application's services and hooks up the trial views; nullptr with
// the reason in `error` when it cannot open.
std::unique_ptr<platform::GameWindow> open_window(AppState& app, const WindowRequest& request,
                                                  std::string& error);

}  // namespace veldra
