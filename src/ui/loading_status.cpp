#include "ui/loading_status.h"

#include <algorithm>
#include <cmath>

#include "runtime/renderer.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "ui/hud_layout.h"

namespace veldra {

namespace {

constexpr float TEXT_SIZE = 30;
constexpr float PADDING = 24;
constexpr float BAR_WIDTH = 560;
constexpr float BAR_HEIGHT = 18;
constexpr Rgba PANEL{18, 22, 28, 230};

}  // namespace

void obj_loading_status::on_create() {
    persistent = true;
}

void obj_loading_status::set(std::string text, std::optional<double> progress) {
    text_ = std::move(text);
    if (progress && std::isfinite(*progress))
        progress_ = std::clamp(*progress, 0.0, 1.0);
    else
        progress_.reset();
}

void obj_loading_status::clear() {
    text_.clear();
    progress_.reset();
}

void obj_loading_status::on_draw_gui() {
    if (text_.empty())
        return;
    Renderer& renderer = *runtime().services().renderer;
    const TextSize size = renderer.measure_text(text_, TEXT_SIZE);
    const float inner_w = std::max(size.width, progress_ ? BAR_WIDTH : 0.0f);
    const float inner_h = size.height + (progress_ ? PADDING + BAR_HEIGHT : 0.0f);
    const float left = (LOGICAL_WIDTH - inner_w) / 2 - PADDING;
    const float top = (LOGICAL_HEIGHT - inner_h) / 2 - PADDING;
    DrawList& list = renderer.draw_list();
    list.rect(left, top, inner_w + 2 * PADDING, inner_h + 2 * PADDING, PANEL);
    list.text((LOGICAL_WIDTH - size.width) / 2, top + PADDING, text_, HUD_TEXT_COLOR, TEXT_SIZE);
    if (!progress_)
        return;
    const float bar_x = (LOGICAL_WIDTH - BAR_WIDTH) / 2;
    const float bar_y = top + PADDING + size.height + PADDING;
    list.rect(bar_x, bar_y, BAR_WIDTH, BAR_HEIGHT, TIME_BAR_BACKGROUND);
    list.rect(bar_x, bar_y, std::round(BAR_WIDTH * static_cast<float>(*progress_)), BAR_HEIGHT,
              TIME_BAR_FILL);
}

}  // namespace veldra
