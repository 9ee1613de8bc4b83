#include "ui/control_record.h"

#include <imgui.h>

#include <algorithm>

#include "runtime/log.h"
#include "ui/overlay_style.h"

namespace veldra {

bool ControlRecord::shows(std::string_view fragment) const {
    return std::any_of(texts.begin(), texts.end(), [&](const std::string& text) {
        return text.find(fragment) != std::string::npos;
    });
}

const DrawnControl* ControlRecord::find(std::string_view label, ControlPart part) const {
    for (const DrawnControl& control : controls)
        if (control.part == part && control.label == label)
            return &control;
    return nullptr;
}

const DrawnControl* ControlRecord::find_shown(std::string_view text, ControlPart part) const {
    for (const DrawnControl& control : controls)
        if (control.part == part && remove_text_tags(control.label) == text)
            return &control;
    return nullptr;
}

std::optional<ControlRect> ControlRecord::item(std::string_view label) const {
    const DrawnControl* control = find(label);
    return control ? std::optional<ControlRect>(control->rect) : std::nullopt;
}

void remember_item(ControlRecord& record, std::string label, ControlPart part) {
    const ImVec2 min = ImGui::GetItemRectMin();
    const ImVec2 max = ImGui::GetItemRectMax();
    record.controls.push_back(
        {.label = std::move(label),
         .part = part,
         .rect = ControlRect{.x = min.x, .y = min.y, .w = max.x - min.x, .h = max.y - min.y},
         .minimum = 0,
         .maximum = 0});
}

float slider_value_x(const DrawnControl& bar, double value) {
    // Dear ImGui keeps the grab inside the bar, 2 pixels from either end.
    constexpr float grab_padding = 2;
    const float grab = overlay_style::SLIDER_GRAB_SIZE;
    const double range = bar.maximum - bar.minimum;
    const double t =
        range > 0 ? (std::clamp(value, bar.minimum, bar.maximum) - bar.minimum) / range : 0;
    return bar.rect.x + grab_padding + grab / 2 +
           static_cast<float>(t) * (bar.rect.w - 2 * grab_padding - grab);
}

}  // namespace veldra
