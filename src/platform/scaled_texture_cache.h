#pragma once
// Copies of textures already scaled to the size they are drawn at. The software renderer scales
// a blended texture through a fresh scratch picture on every draw; a creature's sprite drawn at
// the camera's zoom fifty times a frame cost more than the rest of the frame. A copy made once
// per size is then drawn unscaled, pixel for pixel what the scaled draw gave.
//
// A copy not drawn for a while is dropped, so zooming through many sizes leaves nothing behind.

#include <SDL.h>

#include <cstdint>
#include <map>
#include <tuple>

namespace veldra::platform {

class ScaledTextureCache {
public:
    explicit ScaledTextureCache(SDL_Renderer* renderer) : sdl_(renderer) {}
    ~ScaledTextureCache();
    ScaledTextureCache(const ScaledTextureCache&) = delete;
    ScaledTextureCache& operator=(const ScaledTextureCache&) = delete;

    // `source` (known by `id`) at `width` x `height` pixels: a kept copy, a new one, or
    // `source` itself when it already has that size or a copy cannot be made.
    SDL_Texture* at_size(std::uint32_t id, SDL_Texture* source, int width, int height);
    // Once a frame: drops the copies that have not been drawn for a while.
    void end_frame();
    std::size_t size() const { return copies_.size(); }

    // Frames a copy is kept without being drawn.
    static constexpr std::uint32_t KEPT_FRAMES = 120;
    // No copy is made larger than this many pixels, nor kept beyond this many pixels in all.
    static constexpr long long LARGEST_COPY = 4LL * 1024 * 1024;
    static constexpr long long MOST_PIXELS = 8LL * 1024 * 1024;

private:
    struct Copy {
        SDL_Texture* texture;
        std::uint32_t last_frame;
    };
    using Key = std::tuple<std::uint32_t, int, int>;
    SDL_Texture* make_copy(SDL_Texture* source, int width, int height);
    void drop_oldest();

    SDL_Renderer* sdl_;
    std::map<Key, Copy> copies_;
    long long pixels_ = 0;
    std::uint32_t frame_ = 0;
};

}  // namespace veldra::platform
