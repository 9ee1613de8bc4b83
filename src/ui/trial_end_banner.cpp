#include "ui/trial_end_banner.h"

#include <algorithm>

#include "runtime/renderer.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "ui/hud_layout.h"

namespace veldra {

namespace {

constexpr float HEADLINE_SIZE = 44;
constexpr float LINE_SIZE = 26;
constexpr float PADDING = 28;
constexpr float LINE_GAP = 12;
constexpr Rgba PANEL{18, 22, 28, 225};
constexpr Rgba PANEL_EDGE{236, 192, 78, 255};

}  // namespace

void obj_trial_end_banner::on_draw_gui() {
    if (lines.empty())
        return;
    Renderer& renderer = *runtime().services().renderer;
    float width = 0;
    float height = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const TextSize size = renderer.measure_text(lines[i], i == 0 ? HEADLINE_SIZE : LINE_SIZE);
        width = std::max(width, size.width);
        height += size.height + (i > 0 ? LINE_GAP : 0);
    }
    const float panel_w = width + 2 * PADDING;
    const float panel_h = height + 2 * PADDING;
    const float left = (LOGICAL_WIDTH - panel_w) / 2;
    const float top = (LOGICAL_HEIGHT - panel_h) / 2;
    DrawList& list = renderer.draw_list();
    list.rect(left, top, panel_w, panel_h, PANEL);
    list.rect_outline(left, top, panel_w, panel_h, PANEL_EDGE);
    float y = top + PADDING;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const float size = i == 0 ? HEADLINE_SIZE : LINE_SIZE;
        const TextSize measured = renderer.measure_text(lines[i], size);
        list.text((LOGICAL_WIDTH - measured.width) / 2, y, lines[i], HUD_TEXT_COLOR, size);
        y += measured.height + LINE_GAP;
    }
}

}  // namespace veldra
