#include "ui/sound_synthesis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace veldra::ui {
namespace {

constexpr int SOUNDS = static_cast<int>(Sound::count);

int peak(const std::vector<std::int16_t>& samples) {
    int p = 0;
    for (std::int16_t s : samples)
        p = std::max(p, std::abs(static_cast<int>(s)));
    return p;
}

TEST(SoundSynthesis, EverySoundIsAudibleShortAndNeverClips) {
    for (int rate : {22050, 44100, 48000}) {
        for (int i = 0; i < SOUNDS; ++i) {
            const auto samples = synthesize_sound(static_cast<Sound>(i), rate);
            SCOPED_TRACE("sound " + std::to_string(i) + " at " + std::to_string(rate));
            ASSERT_FALSE(samples.empty());
            EXPECT_LE(samples.size(), static_cast<std::size_t>(MAX_SOUND_SECONDS * rate));
            EXPECT_GE(samples.size(), static_cast<std::size_t>(0.03 * rate));
            EXPECT_LE(peak(samples), static_cast<int>(SOUND_PEAK * 32767) + 1);
            EXPECT_GE(peak(samples), static_cast<int>(0.9 * SOUND_PEAK * 32767));
        }
    }
}

TEST(SoundSynthesis, SoundsStartAndEndAtSilenceSoTheyDoNotClick) {
    for (int i = 0; i < SOUNDS; ++i) {
        const auto samples = synthesize_sound(static_cast<Sound>(i), 44100);
        SCOPED_TRACE("sound " + std::to_string(i));
        ASSERT_GT(samples.size(), 64u);
        EXPECT_LE(std::abs(samples.front()), 200);
        EXPECT_LE(std::abs(samples.back()), 200);
        // The first and last millisecond rise from and fall to silence.
        for (std::size_t k = 0; k < 8; ++k) {
            EXPECT_LE(std::abs(samples[k]), 2000) << k;
            EXPECT_LE(std::abs(samples[samples.size() - 1 - k]), 2000) << k;
        }
    }
}

TEST(SoundSynthesis, IsDeterministicAndEverySoundIsDifferent) {
    for (int i = 0; i < SOUNDS; ++i) {
        const auto a = synthesize_sound(static_cast<Sound>(i), 44100);
        EXPECT_EQ(a, synthesize_sound(static_cast<Sound>(i), 44100)) << i;
        for (int j = 0; j < i; ++j)
            EXPECT_NE(a, synthesize_sound(static_cast<Sound>(j), 44100)) << i << " vs " << j;
    }
}

TEST(SoundSynthesis, NonsenseArgumentsGiveNoSamples) {
    EXPECT_TRUE(synthesize_sound(Sound::hit, 0).empty());
    EXPECT_TRUE(synthesize_sound(Sound::hit, -44100).empty());
    EXPECT_TRUE(synthesize_sound(Sound::count, 44100).empty());
}

}  // namespace
}  // namespace veldra::ui
