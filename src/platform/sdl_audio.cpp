#include "platform/sdl_audio.h"

#include <SDL.h>
#include <SDL_mixer.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "runtime/log.h"
#include "ui/sound_synthesis.h"

namespace veldra::platform {

SdlAudio::SdlAudio() {
    if (!open_device())
        log_warning(std::string("No audio device could be opened (") + SDL_GetError() +
                    "); the game plays without sound.");
}

SdlAudio::~SdlAudio() {
    close_device();
}

bool SdlAudio::open_device() {
    if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0)
        return false;
    if (Mix_OpenAudio(44100, AUDIO_S16SYS, 2, 1024) != 0) {
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
        return false;
    }
    open_ = true;
    int rate = 0;
    Uint16 format = 0;
    int channels = 0;
    // The device may have settled on another rate or channel count; the samples follow it.
    if (Mix_QuerySpec(&rate, &format, &channels) == 0 || format != AUDIO_S16SYS ||
        !load_sounds(rate, channels)) {
        SDL_SetError("the device did not accept 16-bit samples");
        close_device();
        return false;
    }
    Mix_AllocateChannels(MIXER_CHANNELS);
    set_volume(volume_);
    return true;
}

bool SdlAudio::load_sounds(int rate, int channels) {
    if (channels < 1)
        return false;
    for (std::size_t i = 0; i < SOUND_COUNT; ++i) {
        const auto mono = ui::synthesize_sound(static_cast<Sound>(i), rate);
        auto& out = samples_[i];
        out.resize(mono.size() * static_cast<std::size_t>(channels));
        for (std::size_t s = 0; s < mono.size(); ++s)
            std::fill_n(out.begin() + static_cast<std::ptrdiff_t>(s * channels), channels, mono[s]);
        chunks_[i] = Mix_QuickLoad_RAW(reinterpret_cast<Uint8*>(out.data()),
                                       static_cast<Uint32>(out.size() * sizeof(std::int16_t)));
        if (!chunks_[i])
            return false;
    }
    return true;
}

void SdlAudio::close_device() {
    if (!open_)
        return;
    Mix_HaltChannel(-1);
    for (Mix_Chunk*& chunk : chunks_) {
        if (chunk)
            Mix_FreeChunk(chunk);
        chunk = nullptr;
    }
    Mix_CloseAudio();
    SDL_QuitSubSystem(SDL_INIT_AUDIO);
    open_ = false;
}

void SdlAudio::play(Sound sound) {
    const auto i = static_cast<std::size_t>(sound);
    if (!open_ || i >= SOUND_COUNT || !chunks_[i])
        return;
    // -1 when every channel is busy: a sound lost in a crowd of others is not missed.
    Mix_PlayChannel(-1, chunks_[i], 0);
}

void SdlAudio::set_volume(double volume) {
    volume_ = std::isnan(volume) ? 0 : std::clamp(volume, 0.0, 1.0);
    if (open_)
        Mix_Volume(-1, static_cast<int>(std::lround(volume_ * MIX_MAX_VOLUME)));
}

}  // namespace veldra::platform
