#include "platform/font_atlas.h"

#include <SDL.h>
#include <imgui.h>

#include "ui/text_fonts.h"

namespace veldra::platform {

bool load_font_atlas(WindowSession& session, const std::string& folder, std::string& error) {
    // The small regular face goes in first: it is Dear ImGui's default font for the menus.
    session.font_small = add_text_font_family(folder, SMALL_FONT_PIXELS, error);
    if (!session.font_small)
        return false;
    session.font_large = add_text_font_family(folder, LARGE_FONT_PIXELS, error);
    if (!session.font_large)
        return false;
    ImFontAtlas& atlas = *ImGui::GetIO().Fonts;
    if (!atlas.Build()) {
        error = "cannot read the glyphs of the fonts in \"" + folder + "\"";
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
