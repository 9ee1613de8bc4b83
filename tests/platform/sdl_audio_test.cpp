#include "platform/sdl_audio.h"

#include <SDL.h>
#include <SDL_mixer.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "runtime/log.h"

namespace veldra::platform {
namespace {

// Each test picks the audio driver before SDL starts and shuts SDL down after itself.
class SdlAudioTest : public ::testing::Test {
protected:
    void TearDown() override { SDL_Quit(); }
};

TEST_F(SdlAudioTest, DummyDevicePlaysEverySound) {
    setenv("SDL_AUDIODRIVER", "dummy", 1);
    LogCapture log;
    SdlAudio audio;
    ASSERT_TRUE(audio.has_device());
    EXPECT_TRUE(log.lines.empty());
    for (int i = 0; i < static_cast<int>(Sound::count); ++i) {
        const int before = Mix_Playing(-1);
        audio.play(static_cast<Sound>(i));
        EXPECT_EQ(Mix_Playing(-1), before + 1) << "sound " << i;
    }
    // More sounds than channels: the extra ones are dropped.
    for (int i = 0; i < 2 * MIXER_CHANNELS; ++i)
        audio.play(Sound::hit);
    EXPECT_EQ(Mix_Playing(-1), MIXER_CHANNELS);
}

TEST_F(SdlAudioTest, VolumeIsClampedAndReachesTheMixer) {
    setenv("SDL_AUDIODRIVER", "dummy", 1);
    SdlAudio audio;
    ASSERT_TRUE(audio.has_device());
    audio.set_volume(0.5);
    EXPECT_DOUBLE_EQ(audio.volume(), 0.5);
    EXPECT_NEAR(Mix_Volume(0, -1), MIX_MAX_VOLUME / 2, 1);
    audio.set_volume(3);
    EXPECT_DOUBLE_EQ(audio.volume(), 1);
    EXPECT_EQ(Mix_Volume(MIXER_CHANNELS - 1, -1), MIX_MAX_VOLUME);
    audio.set_volume(-2);
    EXPECT_DOUBLE_EQ(audio.volume(), 0);
    EXPECT_EQ(Mix_Volume(0, -1), 0);
    audio.set_volume(std::nan(""));
    EXPECT_DOUBLE_EQ(audio.volume(), 0);
}

TEST_F(SdlAudioTest, WithoutADeviceTheGameIsSilentAfterOneWarning) {
    setenv("SDL_AUDIODRIVER", "no-such-driver", 1);
    LogCapture log;
    {
        SdlAudio audio;
        EXPECT_FALSE(audio.has_device());
        audio.play(Sound::death);
        audio.set_volume(0.3);
        EXPECT_DOUBLE_EQ(audio.volume(), 0.3);
    }
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_EQ(log.lines[0].level, LogLevel::warning);
    EXPECT_TRUE(log.contains("No audio device could be opened ("));
    EXPECT_TRUE(log.contains("); the game plays without sound."));
    setenv("SDL_AUDIODRIVER", "dummy", 1);
}

}  // namespace
}  // namespace veldra::platform
