#pragma once
// The player's keyboard and mouse, read once per frame at the start of the frame loop. Entities
// read the state of this frame; nothing else in the game polls a device. The window backend
// fills it from its event queue; headless runs and replays fill it from recorded frames.

#include <bitset>
#include <cstdint>
#include <deque>

namespace veldra {

enum class Key : std::uint8_t {
    up,
    down,
    left,
    right,
    w,
    a,
    s,
    d,
    space,
    enter,
    escape,
    tab,
    backspace,
    f11,
    f12,
    plus,
    minus,
    p,
    ctrl,  // either Control key
    count
};

enum class MouseButton : std::uint8_t { left, right, middle, count };

// One frame of input. "pressed" and "released" are edges within this frame; "down" is held.
// Mouse coordinates are in the game's logical pixels (1600 x 900), whatever the window's size.
struct InputFrame {
    std::bitset<static_cast<std::size_t>(Key::count)> keys_down;
    std::bitset<static_cast<std::size_t>(Key::count)> keys_pressed;
    std::bitset<static_cast<std::size_t>(Key::count)> keys_released;
    std::bitset<static_cast<std::size_t>(MouseButton::count)> buttons_down;
    std::bitset<static_cast<std::size_t>(MouseButton::count)> buttons_pressed;
    std::bitset<static_cast<std::size_t>(MouseButton::count)> buttons_released;
    double mouse_x = 0;
    double mouse_y = 0;
    double wheel = 0;             // notches this frame; positive away from the player
    bool quit_requested = false;  // the window's close button

    bool down(Key key) const { return keys_down[static_cast<std::size_t>(key)]; }
    bool pressed(Key key) const { return keys_pressed[static_cast<std::size_t>(key)]; }
    bool released(Key key) const { return keys_released[static_cast<std::size_t>(key)]; }
    bool down(MouseButton b) const { return buttons_down[static_cast<std::size_t>(b)]; }
    bool pressed(MouseButton b) const { return buttons_pressed[static_cast<std::size_t>(b)]; }
    bool released(MouseButton b) const { return buttons_released[static_cast<std::size_t>(b)]; }
};

class Input {
public:
    virtual ~Input() = default;
    // Reads what happened since the last call; called once per frame by the frame loop.
    virtual void poll() = 0;
    const InputFrame& frame() const { return frame_; }

protected:
    InputFrame frame_;
};

// No devices: each poll takes the next scripted frame, if any; once they run out nothing is
// held or pressed and the mouse stays where the last frame left it.
class ScriptedInput final : public Input {
public:
    void poll() override;

    std::deque<InputFrame> frames;  // consumed front first, one per poll
};

}  // namespace veldra
