#pragma once
// Engine services the game calls: clock, input, renderer, audio, HTTP, dialogs, the terminal
// sink and file access. Each has a headless backend here, the default; start-up replaces them
// once with the windowed backends (SDL2, Dear ImGui, libcurl) when the program opens a window.
// Files stay on the disk in both; a platform without a plain file system replaces them too.

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "runtime/audio.h"
#include "runtime/dialogs.h"
#include "runtime/files.h"
#include "runtime/http.h"
#include "runtime/input.h"
#include "runtime/log.h"
#include "runtime/renderer.h"

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
// system clock itself. Without one (a test's own services) every date is 1970-01-01 00:00:00.
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

// Where the developer terminal prints log lines. Lines carry colour markup.
class Terminal {
public:
    virtual ~Terminal() = default;
    virtual void println(LogLevel level, std::string_view line) = 0;
    bool verbose = false;  // shows info lines too, not only warnings and errors
};

// Headless: warnings and errors to stderr with markup removed; info lines too when verbose.
class StderrTerminal final : public Terminal {
public:
    void println(LogLevel level, std::string_view line) override;
};

struct Services {
    std::unique_ptr<Clock> clock = std::make_unique<FrameClock>();
    std::unique_ptr<Input> input = std::make_unique<ScriptedInput>();
    std::unique_ptr<Renderer> renderer = std::make_unique<NullRenderer>();
    std::unique_ptr<Audio> audio = std::make_unique<SilentAudio>();
    std::unique_ptr<Http> http = std::make_unique<OfflineHttp>();
    std::unique_ptr<Dialogs> dialogs = std::make_unique<ScriptedDialogs>();
    std::unique_ptr<Terminal> terminal = std::make_unique<StderrTerminal>();
    std::unique_ptr<Files> files = std::make_unique<DiskFiles>();
    // Opens an address in the system browser (a session's completion link). Headless, the
    // address is logged, so a shell user can still follow it.
    std::function<void(const std::string& url)> open_url = [](const std::string& url) {
        log("Open this address in a browser: " + url);
    };
    bool headless = true;
};

}  // namespace veldra
