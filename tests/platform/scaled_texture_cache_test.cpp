// Scaled copies of textures, made on an off-screen software renderer: the copy drawn unscaled
// gives the pixels the scaled draw gave, and copies are reused, refused and dropped as they
// should be.

#include "platform/scaled_texture_cache.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace veldra::platform {
namespace {

class ScaledTextureCacheTest : public testing::Test {
protected:
    void SetUp() override {
        target = SDL_CreateRGBSurfaceWithFormat(0, 200, 120, 32, SDL_PIXELFORMAT_ARGB8888);
        ASSERT_NE(target, nullptr) << SDL_GetError();
        renderer = SDL_CreateSoftwareRenderer(target);
        ASSERT_NE(renderer, nullptr) << SDL_GetError();
        SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, "linear");
        // A 4 x 3 picture of colours and alphas that a scaled draw must blend between.
        std::vector<std::uint32_t> pixels;
        for (std::uint32_t i = 0; i < 12; ++i)
            pixels.push_back(((i * 53) & 0xff) << 24 | ((i * 97) & 0xff) << 16 |
                             ((255 - i * 20) & 0xff) << 8 | (i % 3 == 0 ? 0xffu : 40u + i * 15));
        source =
            SDL_CreateTexture(renderer, SDL_PIXELFORMAT_RGBA8888, SDL_TEXTUREACCESS_STATIC, 4, 3);
        ASSERT_NE(source, nullptr) << SDL_GetError();
        SDL_UpdateTexture(source, nullptr, pixels.data(), 4 * 4);
        SDL_SetTextureBlendMode(source, SDL_BLENDMODE_BLEND);
        SDL_SetTextureScaleMode(source, SDL_ScaleModeLinear);
    }
    void TearDown() override {
        cache.reset();
        if (source)
            SDL_DestroyTexture(source);
        if (renderer)
            SDL_DestroyRenderer(renderer);
        if (target)
            SDL_FreeSurface(target);
    }

    // The target after drawing `texture` tinted at 10, 20 over a grey ground, `w` x `h` big.
    std::vector<std::uint32_t> drawn(SDL_Texture* texture, int w, int h) {
        SDL_SetRenderDrawColor(renderer, 90, 90, 90, 255);
        SDL_RenderClear(renderer);
        SDL_SetTextureColorMod(texture, 255, 200, 120);
        SDL_SetTextureAlphaMod(texture, 180);
        SDL_SetTextureBlendMode(texture, SDL_BLENDMODE_BLEND);
        const SDL_Rect where{10, 20, w, h};
        SDL_RenderCopy(renderer, texture, nullptr, &where);
        SDL_RenderFlush(renderer);
        const auto* first = static_cast<const std::uint32_t*>(target->pixels);
        return {first, first + target->w * target->h};
    }

    SDL_Surface* target = nullptr;
    SDL_Renderer* renderer = nullptr;
    SDL_Texture* source = nullptr;
    std::unique_ptr<ScaledTextureCache> cache;
};

TEST_F(ScaledTextureCacheTest, TheCopyDrawnUnscaledGivesThePixelsOfTheScaledDraw) {
    cache = std::make_unique<ScaledTextureCache>(renderer);
    for (const auto& [w, h] : {std::pair{37, 23}, std::pair{150, 90}, std::pair{3, 2}}) {
        const std::vector<std::uint32_t> scaled = drawn(source, w, h);
        SDL_Texture* copy = cache->at_size(1, source, w, h);
        ASSERT_NE(copy, source) << w << " x " << h;
        EXPECT_EQ(drawn(copy, w, h), scaled) << w << " x " << h;
    }
    // Making a copy leaves the source's tint and blending as they were.
    Uint8 r = 0, g = 0, b = 0, a = 0;
    SDL_GetTextureColorMod(source, &r, &g, &b);
    SDL_GetTextureAlphaMod(source, &a);
    EXPECT_EQ((std::vector<int>{r, g, b, a}), (std::vector<int>{255, 200, 120, 180}));
}

TEST_F(ScaledTextureCacheTest, CopiesAreReusedRefusedWhenPointlessAndDroppedWhenUnused) {
    cache = std::make_unique<ScaledTextureCache>(renderer);
    EXPECT_EQ(cache->at_size(1, source, 4, 3), source) << "already that size";
    EXPECT_EQ(cache->at_size(1, source, 0, 5), source);
    EXPECT_EQ(cache->at_size(1, source, 4096, 4096), source) << "too large to keep";
    EXPECT_EQ(cache->size(), 0u);
    SDL_Texture* copy = cache->at_size(1, source, 40, 30);
    EXPECT_EQ(cache->at_size(1, source, 40, 30), copy);
    EXPECT_NE(cache->at_size(2, source, 40, 30), copy) << "another texture, another copy";
    EXPECT_EQ(cache->size(), 2u);
    for (std::uint32_t frame = 0; frame <= ScaledTextureCache::KEPT_FRAMES; ++frame) {
        cache->at_size(1, source, 40, 30);
        cache->end_frame();
    }
    EXPECT_EQ(cache->size(), 1u) << "the copy not drawn for a while is gone";
    EXPECT_EQ(cache->at_size(1, source, 40, 30), copy);
}

}  // namespace
}  // namespace veldra::platform
