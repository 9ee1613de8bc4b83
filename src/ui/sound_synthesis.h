#pragma once
// The game's sounds are made by code at start-up, so the program ships no audio files and every
// build sounds the same. The window's audio backend turns these samples into mixer chunks.

#include <cstdint>
#include <vector>

#include "runtime/audio.h"

namespace veldra::ui {

// The longest any sound lasts, so a burst of events never piles up long tails.
inline constexpr double MAX_SOUND_SECONDS = 0.8;
// The loudest sample of any sound, as a fraction of full scale: several sounds may overlap.
inline constexpr double SOUND_PEAK = 0.45;

// Mono 16-bit samples of `sound` at `sample_rate` samples per second. The same for the same
// arguments; faded in and out so playing it never clicks. Empty for a rate below 1000 or for
// Sound::count.
std::vector<std::int16_t> synthesize_sound(Sound sound, int sample_rate);

}  // namespace veldra::ui
