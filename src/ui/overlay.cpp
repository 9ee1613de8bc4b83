#include "ui/overlay.h"

#include "runtime/runtime.h"
#include "ui/imgui_adapter.h"

namespace veldra {

bool obj_overlay::in_front() const {
    return front_overlay(runtime()) == this;
}

bool overlay_frame_open() {
    return imgui_adapter::frame_open();
}

obj_overlay* front_overlay_up_to(const Runtime& runtime, OverlayLayer layer) {
    obj_overlay* front = nullptr;
    const std::size_t count = runtime.instance_number<obj_overlay>();
    // Oldest first, so the newest of a layer wins.
    for (std::size_t i = 0; i < count; ++i) {
        obj_overlay* overlay = runtime.instance_find<obj_overlay>(i);
        if (!overlay->showing() || overlay->overlay_layer() > layer)
            continue;
        if (!front || overlay->overlay_layer() >= front->overlay_layer())
            front = overlay;
    }
    return front;
}

obj_overlay* front_overlay(const Runtime& runtime) {
    return front_overlay_up_to(runtime, OverlayLayer::dialog);
}

std::vector<obj_overlay*> overlays_taking_input(const Runtime& runtime) {
    obj_overlay* front = front_overlay(runtime);
    if (!front)
        return {};
    if (front->overlay_layer() != OverlayLayer::panel)
        return {front};
    std::vector<obj_overlay*> panels;
    const std::size_t count = runtime.instance_number<obj_overlay>();
    for (std::size_t i = count; i-- > 0;) {
        obj_overlay* overlay = runtime.instance_find<obj_overlay>(i);
        if (overlay->showing() && overlay->overlay_layer() == OverlayLayer::panel)
            panels.push_back(overlay);
    }
    return panels;
}

}  // namespace veldra
