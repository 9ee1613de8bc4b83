#pragma once
// Engine services the game calls: clock, dialogs and the terminal sink. Each has a headless
// backend here; the windowed backends (SDL2, Dear ImGui) plug in behind the same interfaces.

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "runtime/log.h"

namespace veldra {

struct LocalDateTime {
    int year, month, day, hour, minute, second;
};

class Clock {
public:
    virtual ~Clock() = default;
    // Milliseconds since the program started: the runtime's `current_time`.
    virtual double current_time() const = 0;
    virtual LocalDateTime local_now() const = 0;
    // Called once per frame by the frame loop.
    virtual void frame_done() {}
};

// Headless runs do not wait for real time: every frame advances the clock by one 60 Hz frame,
// so frame-to-frame waits behave as in a window however fast the frames run. The date comes
// from `wall_clock`, which start-up passes in from the platform layer: the runtime reads no
// system clock itself. Without one (a context made by a test) every date is 1970-01-01 00:00:00.
class FrameClock final : public Clock {
public:
    using WallClock = std::function<LocalDateTime()>;

    explicit FrameClock(WallClock wall_clock = nullptr) : wall_clock_(std::move(wall_clock)) {}
    double current_time() const override { return now_ms_; }
    LocalDateTime local_now() const override;
    void frame_done() override { now_ms_ += 1000.0 / 60.0; }

private:
    WallClock wall_clock_;
    double now_ms_ = 0;
};

// For tests: time moves only when told to.
class ManualClock final : public Clock {
public:
    double current_time() const override { return now_ms_; }
    LocalDateTime local_now() const override { return date_time; }
    void advance(double ms) { now_ms_ += ms; }

    LocalDateTime date_time{2024, 3, 7, 9, 5, 41};

private:
    double now_ms_ = 0;
};

class Dialogs {
public:
    virtual ~Dialogs() = default;
    // Each returns nullopt when the user cancels.
    virtual std::optional<std::string> get_string(std::string_view prompt,
                                                  std::string_view initial) = 0;
    virtual std::optional<std::string> get_open_filename(std::string_view filter,
                                                         std::string_view initial) = 0;
    virtual std::optional<std::string> get_save_filename(std::string_view filter,
                                                         std::string_view initial,
                                                         std::string_view title) = 0;
    virtual void show_message(std::string_view text) = 0;
};

// No window: answers come from a script (tests, or answers given on the command line); with no
// scripted answer every question is cancelled. Messages go to stderr so a shell user sees them.
class ScriptedDialogs final : public Dialogs {
public:
    std::optional<std::string> get_string(std::string_view prompt,
                                          std::string_view initial) override;
    std::optional<std::string> get_open_filename(std::string_view filter,
                                                 std::string_view initial) override;
    std::optional<std::string> get_save_filename(std::string_view filter, std::string_view initial,
                                                 std::string_view title) override;
    void show_message(std::string_view text) override;

    std::deque<std::optional<std::string>> answers;  // consumed front first
    std::deque<std::string> messages_shown;
    bool echo_messages_to_stderr = true;

private:
    std::optional<std::string> next_answer();
};

// Where the developer terminal prints log lines. Lines carry colour markup.
class Terminal {
public:
    virtual ~Terminal() = default;
    virtual void println(LogLevel level, std::string_view line) = 0;
};

// Headless: warnings and errors to stderr with markup removed; info lines too when verbose.
class StderrTerminal final : public Terminal {
public:
    void println(LogLevel level, std::string_view line) override;
    bool verbose = false;
};

struct Services {
    std::unique_ptr<Clock> clock = std::make_unique<FrameClock>();
    std::unique_ptr<Dialogs> dialogs = std::make_unique<ScriptedDialogs>();
    std::unique_ptr<Terminal> terminal = std::make_unique<StderrTerminal>();
    bool headless = true;
};

Services& services();
inline double current_time() {
    return services().clock->current_time();
}

}  // namespace veldra
