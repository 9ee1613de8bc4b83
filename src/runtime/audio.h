#pragma once
// Sounds. The game names what happened; the backend decides how it sounds (the window's backend
// synthesises each at start-up). Headless runs are silent.

#include <array>
#include <cstddef>
#include <cstdint>

namespace veldra {

enum class Sound : std::uint8_t {
    ui_click,
    attack,
    hit,
    miss,
    eat,
    exchange,
    death,
    trial_end,
    count
};

class Audio {
public:
    virtual ~Audio() = default;
    virtual void play(Sound sound) = 0;
    // 0 (silent) to 1 (full); values outside are clamped.
    virtual void set_volume(double volume) = 0;
    virtual double volume() const = 0;
};

// Plays nothing, but counts what it was asked to play, so tests can check that a view asked.
class SilentAudio final : public Audio {
public:
    void play(Sound sound) override { ++played[static_cast<std::size_t>(sound)]; }
    void set_volume(double volume) override;
    double volume() const override { return volume_; }

    std::array<std::int64_t, static_cast<std::size_t>(Sound::count)> played{};

private:
    double volume_ = 1;
};

}  // namespace veldra
