#include "platform/scaled_texture_cache.h"

#include <algorithm>

namespace veldra::platform {

namespace {

long long pixel_count(const std::tuple<std::uint32_t, int, int>& key) {
    return static_cast<long long>(std::get<1>(key)) * std::get<2>(key);
}

}  // namespace

ScaledTextureCache::~ScaledTextureCache() {
    for (auto& [key, copy] : copies_)
        SDL_DestroyTexture(copy.texture);
}

SDL_Texture* ScaledTextureCache::at_size(std::uint32_t id, SDL_Texture* source, int width,
                                         int height) {
    int own_width = 0;
    int own_height = 0;
    if (SDL_QueryTexture(source, nullptr, nullptr, &own_width, &own_height) != 0 ||
        (own_width == width && own_height == height) || width <= 0 || height <= 0 ||
        static_cast<long long>(width) * height > LARGEST_COPY)
        return source;
    const Key key{id, width, height};
    if (auto found = copies_.find(key); found != copies_.end()) {
        found->second.last_frame = frame_;
        return found->second.texture;
    }
    while (!copies_.empty() && pixels_ + pixel_count(key) > MOST_PIXELS)
        drop_oldest();
    SDL_Texture* copy = make_copy(source, width, height);
    if (!copy)
        return source;
    copies_.emplace(key, Copy{copy, frame_});
    pixels_ += pixel_count(key);
    return copy;
}

SDL_Texture* ScaledTextureCache::make_copy(SDL_Texture* source, int width, int height) {
    Uint32 format = 0;
    SDL_QueryTexture(source, &format, nullptr, nullptr, nullptr);
    SDL_Texture* copy = SDL_CreateTexture(sdl_, format, SDL_TEXTUREACCESS_TARGET, width, height);
    if (!copy)
        return nullptr;
    // The copy holds the source's own pixels scaled, alpha and all: no tint, no blending, so
    // that drawing it later tints and blends exactly as drawing the source did.
    SDL_BlendMode blend = SDL_BLENDMODE_NONE;
    Uint8 r = 255, g = 255, b = 255, a = 255;
    SDL_GetTextureBlendMode(source, &blend);
    SDL_GetTextureColorMod(source, &r, &g, &b);
    SDL_GetTextureAlphaMod(source, &a);
    SDL_SetTextureBlendMode(source, SDL_BLENDMODE_NONE);
    SDL_SetTextureColorMod(source, 255, 255, 255);
    SDL_SetTextureAlphaMod(source, 255);
    SDL_Texture* target = SDL_GetRenderTarget(sdl_);
    SDL_Rect clip{};
    const bool clipped = SDL_RenderIsClipEnabled(sdl_) == SDL_TRUE;
    if (clipped)
        SDL_RenderGetClipRect(sdl_, &clip);
    const bool made =
        SDL_SetRenderTarget(sdl_, copy) == 0 && SDL_RenderCopy(sdl_, source, nullptr, nullptr) == 0;
    SDL_SetRenderTarget(sdl_, target);
    if (clipped)
        SDL_RenderSetClipRect(sdl_, &clip);
    SDL_SetTextureBlendMode(source, blend);
    SDL_SetTextureColorMod(source, r, g, b);
    SDL_SetTextureAlphaMod(source, a);
    if (!made) {
        SDL_DestroyTexture(copy);
        return nullptr;
    }
    return copy;
}

void ScaledTextureCache::end_frame() {
    ++frame_;
    for (auto it = copies_.begin(); it != copies_.end();) {
        if (frame_ - it->second.last_frame > KEPT_FRAMES) {
            pixels_ -= pixel_count(it->first);
            SDL_DestroyTexture(it->second.texture);
            it = copies_.erase(it);
        } else {
            ++it;
        }
    }
}

void ScaledTextureCache::drop_oldest() {
    const auto oldest = std::ranges::min_element(
        copies_, {}, [](const auto& entry) { return entry.second.last_frame; });
    pixels_ -= pixel_count(oldest->first);
    SDL_DestroyTexture(oldest->second.texture);
    copies_.erase(oldest);
}

}  // namespace veldra::platform
