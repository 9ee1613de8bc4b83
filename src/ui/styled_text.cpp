#include "ui/styled_text.h"

#include <imgui.h>

#include <algorithm>
#include <cstdint>

#include "ui/imgui_adapter.h"
#include "ui/text_layout.h"

namespace veldra {

namespace {

std::uint8_t channel(float value) {
    return static_cast<std::uint8_t>(std::clamp(value, 0.0f, 1.0f) * 255.0f + 0.5f);
}

}  // namespace

void styled_text(std::string_view markup, float wrap_width, std::size_t visible_characters) {
    if (imgui_adapter::current_window_skips_items())
        return;
    const float width = wrap_width > 0 ? wrap_width : ImGui::GetContentRegionAvail().x;
    const ImVec4 own = ImGui::GetStyleColorVec4(ImGuiCol_Text);
    const float window_alpha = ImGui::GetStyle().Alpha;
    TextBox box;
    box.size = ImGui::GetFontSize();
    box.width = std::max(width, 0.0f);
    box.colour = {channel(own.x), channel(own.y), channel(own.z), channel(own.w)};
    const ImFont& font = *ImGui::GetFont();
    TextLayout layout;
    layout.lay_out(font, markup, box);

    ImVec2 origin = ImGui::GetCursorScreenPos();
    // A label beside a field sits on the field's text line (AlignTextToFramePadding), as
    // ImGui's own text would.
    origin.y += imgui_adapter::current_line_text_offset();
    ImDrawList& draw = *ImGui::GetWindowDrawList();
    draw.PushTextureID(font.ContainerAtlas->TexID);
    // The text takes the room its glyphs cover, not the whole box: a widget on the same line
    // (SameLine) goes right after it.
    float right = origin.x + layout.size().width;
    layout.for_each_quad(origin.x, origin.y, std::string::npos,
                         [&](const GlyphQuad& q) { right = std::max(right, q.x1); });
    layout.for_each_quad(origin.x, origin.y, visible_characters, [&](const GlyphQuad& q) {
        const auto alpha = static_cast<std::uint8_t>(q.colour.a * window_alpha + 0.5f);
        draw.PrimReserve(6, 4);
        draw.PrimRectUV({q.x0, q.y0}, {q.x1, q.y1}, {q.u0, q.v0}, {q.u1, q.v1},
                        IM_COL32(q.colour.r, q.colour.g, q.colour.b, alpha));
    });
    draw.PopTextureID();
    ImGui::Dummy({right - origin.x, layout.size().height});
}

}  // namespace veldra
