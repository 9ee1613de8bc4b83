#include "runtime/input.h"

namespace veldra {

void ScriptedInput::poll() {
    if (!frames.empty()) {
        frame_ = frames.front();
        frames.pop_front();
        return;
    }
    InputFrame idle;
    idle.mouse_x = frame_.mouse_x;
    idle.mouse_y = frame_.mouse_y;
    frame_ = idle;
}

}  // namespace veldra
