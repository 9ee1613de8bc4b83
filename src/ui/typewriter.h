#pragma once
// A text revealed a few characters at a time, as if typed: menus and dialogs show what
// visible_characters() says (styled_text's last argument) and skip() on a click or key. Time
// comes from the caller, the clock's current_time each frame, so a manual clock drives tests
// and a paused game pauses nothing here unless its clock stops. Tags are never counted nor cut.

#include <cstddef>
#include <string>
#include <string_view>

namespace veldra {

class Typewriter {
public:
    // Starts revealing `markup` at `start_ms` (the clock's current_time) at
    // `characters_per_second`; a speed of 0 or less shows everything at once.
    Typewriter(std::string markup, double characters_per_second, double start_ms);

    // Reveals what the time `now_ms` has come to; the text never hides again.
    void update(double now_ms);
    // Reveals the rest at once.
    void skip();
    bool finished() const { return visible_ == total_; }

    const std::string& text() const { return markup_; }
    std::size_t visible_characters() const { return visible_; }
    // The markup's start that shows the revealed characters, tags kept (for the draw list).
    std::string_view visible_text() const;

private:
    std::string markup_;
    double characters_per_second_;
    double start_ms_;
    std::size_t total_;
    std::size_t visible_ = 0;
};

}  // namespace veldra
