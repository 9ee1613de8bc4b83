#include "ui/watermark.h"

#include "runtime/renderer.h"
#include "runtime/runtime.h"
#include "runtime/services.h"

namespace veldra {

void obj_watermark::on_draw_gui() {
    constexpr float SIZE = 16;
    constexpr float MARGIN = 8;
    Renderer& renderer = *runtime().services().renderer;
    const TextSize size = renderer.measure_text(text, SIZE);
    renderer.draw_list().text(LOGICAL_WIDTH - size.width - MARGIN,
                              LOGICAL_HEIGHT - size.height - MARGIN, text, {255, 255, 255, 90},
                              SIZE);
}

}  // namespace veldra
