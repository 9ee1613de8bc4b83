#pragma once
// The window's Audio: the game's sounds synthesised at start-up and mixed by SDL_mixer. Without
// an audio device the game still runs, silently, after one warning in the log.

#include <array>
#include <cstdint>
#include <vector>

#include "runtime/audio.h"

struct Mix_Chunk;

namespace veldra::platform {

// Sounds that may overlap (several creatures hit at once); more are dropped, not queued.
inline constexpr int MIXER_CHANNELS = 16;

class SdlAudio final : public Audio {
public:
    SdlAudio();
    ~SdlAudio() override;
    SdlAudio(const SdlAudio&) = delete;
    SdlAudio& operator=(const SdlAudio&) = delete;

    void play(Sound sound) override;
    void set_volume(double volume) override;
    double volume() const override { return volume_; }

    // False when no device opened and every play() is silent.
    bool has_device() const { return open_; }

private:
    static constexpr std::size_t SOUND_COUNT = static_cast<std::size_t>(Sound::count);

    bool open_device();
    bool load_sounds(int rate, int channels);
    void close_device();

    bool open_ = false;
    double volume_ = 1;
    // The mixer plays straight from these; they live as long as the chunks.
    std::array<std::vector<std::int16_t>, SOUND_COUNT> samples_;
    std::array<Mix_Chunk*, SOUND_COUNT> chunks_{};
};

}  // namespace veldra::platform
