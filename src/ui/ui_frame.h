#pragma once
// The one owner of Dear ImGui's frame in a window: the window's input opens it once its events
// are read (overlays draw from then on: menus in the step, dialogs in the last draw event) and
// the window's renderer closes it when it presents, painting what the overlays drew over the
// game. A run without a window has no UiFrame and no Dear ImGui frame; overlays then draw
// nothing (overlay_frame_open()).

#include <imgui.h>

#include <cstddef>
#include <optional>

namespace veldra {

class UiFrame {
public:
    // Reads the window into Dear ImGui: its size, the time passed, its keys.
    using WindowNewFrame = void (*)();

    // Opens the frame on the game's logical screen with the pointer at `pointer` (nowhere when
    // it is outside the window). A frame opened earlier and never closed (a frame that was not
    // presented) is ended, unpainted, first.
    void open(WindowNewFrame window_new_frame, std::optional<ImVec2> pointer);
    // Closes the frame; what it drew, to paint over the game, or nullptr when none was open.
    ImDrawData* close();
    bool is_open() const { return open_; }

    // Frames opened and closed so far; the same once a presented frame ends.
    std::size_t opened() const { return opened_; }
    std::size_t closed() const { return closed_; }

private:
    bool open_ = false;
    std::size_t opened_ = 0;
    std::size_t closed_ = 0;
};

}  // namespace veldra
