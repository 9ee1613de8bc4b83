#include "platform/imgui_drawing.h"

#include <SDL.h>
#include <imgui.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "runtime/renderer.h"

namespace veldra::platform {

void render_imgui_draw_data(SDL_Renderer* renderer, const ImDrawData* data) {
    if (!data || !data->Valid || data->CmdListsCount == 0)
        return;
    const ImVec2 origin = data->DisplayPos;
    for (int l = 0; l < data->CmdListsCount; ++l) {
        const ImDrawList* list = data->CmdLists[l];
        const ImDrawVert* vertices = list->VtxBuffer.Data;
        const ImDrawIdx* indices = list->IdxBuffer.Data;
        for (const ImDrawCmd& cmd : list->CmdBuffer) {
            if (cmd.UserCallback) {
                if (cmd.UserCallback != ImDrawCallback_ResetRenderState)
                    cmd.UserCallback(list, &cmd);
                continue;
            }
            const float x0 = std::max(cmd.ClipRect.x - origin.x, 0.0f);
            const float y0 = std::max(cmd.ClipRect.y - origin.y, 0.0f);
            const float x1 = std::min(cmd.ClipRect.z - origin.x, float(LOGICAL_WIDTH));
            const float y1 = std::min(cmd.ClipRect.w - origin.y, float(LOGICAL_HEIGHT));
            if (x1 <= x0 || y1 <= y0)
                continue;
            const SDL_Rect clip{static_cast<int>(x0), static_cast<int>(y0),
                                static_cast<int>(std::ceil(x1 - x0)),
                                static_cast<int>(std::ceil(y1 - y0))};
            SDL_RenderSetClipRect(renderer, &clip);
            const ImDrawVert* first = vertices + cmd.VtxOffset;
            const auto* bytes = reinterpret_cast<const char*>(first);
            constexpr int STRIDE = sizeof(ImDrawVert);
            SDL_RenderGeometryRaw(
                renderer, static_cast<SDL_Texture*>(cmd.GetTexID()),
                reinterpret_cast<const float*>(bytes + offsetof(ImDrawVert, pos)), STRIDE,
                reinterpret_cast<const SDL_Color*>(bytes + offsetof(ImDrawVert, col)), STRIDE,
                reinterpret_cast<const float*>(bytes + offsetof(ImDrawVert, uv)), STRIDE,
                list->VtxBuffer.Size - static_cast<int>(cmd.VtxOffset), indices + cmd.IdxOffset,
                static_cast<int>(cmd.ElemCount), sizeof(ImDrawIdx));
        }
    }
    SDL_RenderSetClipRect(renderer, nullptr);
}

}  // namespace veldra::platform
