#include "ui/menu_text.h"

#include <imgui.h>

#include <algorithm>

#include "runtime/log.h"

namespace veldra {

std::string menu_plain_text(std::string_view markup) {
    return remove_text_tags(markup);
}

void draw_menu_text(std::string_view markup, float width) {
    const std::string plain = menu_plain_text(markup);
    const bool centred = markup.find("[pin_center]") != std::string_view::npos;
    const float left = ImGui::GetCursorPosX();
    ImGui::BeginGroup();
    ImGui::PushTextWrapPos(left + width);
    std::string_view rest = plain;
    for (;;) {
        const std::size_t end = centred ? rest.find('\n') : std::string_view::npos;
        const std::string_view line = rest.substr(0, end);
        if (centred) {
            // A line too long for one row wraps from the left edge.
            const float line_width = ImGui::CalcTextSize(line.data(), line.data() + line.size()).x;
            ImGui::SetCursorPosX(left + std::max(0.0f, (width - line_width) / 2));
        }
        ImGui::TextUnformatted(line.data(), line.data() + line.size());
        if (end == std::string_view::npos)
            break;
        rest.remove_prefix(end + 1);
    }
    ImGui::PopTextWrapPos();
    ImGui::EndGroup();
}

}  // namespace veldra
