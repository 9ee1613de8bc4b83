#include "platform/font_atlas.h"

#include <SDL.h>
#include <imgui.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <memory>

namespace veldra::platform {

namespace {

// Dear ImGui stops the program on a file it cannot parse, so the file is checked first: it must
// open and start like a TrueType or OpenType font.
bool looks_like_font(const std::string& path, std::string& error) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                         std::fclose);
    if (!file) {
        error = "cannot open the font \"" + path + "\": " + std::strerror(errno) +
                " (install the package fonts-dejavu-core, or rebuild so that the build copies it)";
        return false;
    }
    std::array<unsigned char, 4> magic{};
    if (std::fread(magic.data(), 1, magic.size(), file.get()) != magic.size()) {
        error = "the font \"" + path + "\" is empty or truncated";
        return false;
    }
    constexpr std::array<unsigned char, 4> KNOWN[] = {
        {0, 1, 0, 0}, {'t', 'r', 'u', 'e'}, {'O', 'T', 'T', 'O'}, {'t', 't', 'c', 'f'}};
    for (const auto& known : KNOWN)
        if (magic == known)
            return true;
    error = "\"" + path + "\" is not a TrueType or OpenType font";
    return false;
}

// Latin with its accents (the game's languages), and the punctuation block for dashes, quotes and
// the ellipsis.
constexpr ImWchar GLYPH_RANGES[] = {0x0020, 0x017F, 0x2010, 0x205E, 0};

}  // namespace

bool load_font_atlas(WindowSession& session, const std::string& path, std::string& error) {
    if (!looks_like_font(path, error))
        return false;
    ImFontAtlas& atlas = *ImGui::GetIO().Fonts;
    session.font_small = atlas.AddFontFromFileTTF(path.c_str(), SMALL_FONT_PIXELS, nullptr,
                                                  GLYPH_RANGES);
    session.font_large = atlas.AddFontFromFileTTF(path.c_str(), LARGE_FONT_PIXELS, nullptr,
                                                  GLYPH_RANGES);
    if (!session.font_small || !session.font_large || !atlas.Build()) {
        error = "cannot read the glyphs of the font \"" + path + "\"";
        return false;
    }
    unsigned char* pixels = nullptr;
    int width = 0;
    int height = 0;
    atlas.GetTexDataAsRGBA32(&pixels, &width, &height);
    // ImGui's colours are bytes R, G, B, A in memory: ABGR8888 on a little-endian machine.
    SDL_Texture* texture = SDL_CreateTexture(session.renderer, SDL_PIXELFORMAT_RGBA32,
                                             SDL_TEXTUREACCESS_STATIC, width, height);
    if (!texture || SDL_UpdateTexture(texture, nullptr, pixels, width * 4) != 0) {
        error = std::string("cannot make the font texture: ") + SDL_GetError();
        if (texture)
            SDL_DestroyTexture(texture);
        return false;
    }
    SDL_SetTextureBlendMode(texture, SDL_BLENDMODE_BLEND);
    SDL_SetTextureScaleMode(texture, SDL_ScaleModeLinear);
    atlas.SetTexID(texture);
    session.font_texture = texture;
    return true;
}

}  // namespace veldra::platform
