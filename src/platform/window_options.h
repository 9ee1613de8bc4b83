#pragma once
// How the game's window opens. Start-up fills it from the program's parameters.

#include <string>

namespace veldra::platform {

struct WindowOptions {
    int width = 1600;
    int height = 900;
    bool fullscreen = false;
    bool vsync = true;
    // Sleep to hold 60 frames per second when vsync does not (no vsync, or a virtual display).
    bool pace_frames = true;
    // The folder of the DejaVu Sans faces (regular, bold, oblique, bold oblique); empty: the data
    // folder's fonts/, where the build copies them.
    std::string font_folder;
    // Where F12 writes screenshots; created on the first one.
    std::string screenshot_dir = "screenshots";
};

}  // namespace veldra::platform
