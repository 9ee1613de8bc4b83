#include "ui/ui_frame.h"

#include <cfloat>

#include "runtime/renderer.h"

namespace veldra {

void UiFrame::open(WindowNewFrame window_new_frame, std::optional<ImVec2> pointer) {
    if (open_) {
        ImGui::EndFrame();
        open_ = false;
        ++closed_;
    }
    window_new_frame();
    // The overlays live on the logical screen, whatever the window's size.
    ImGuiIO& io = ImGui::GetIO();
    io.DisplaySize = ImVec2(LOGICAL_WIDTH, LOGICAL_HEIGHT);
    io.DisplayFramebufferScale = ImVec2(1, 1);
    io.MousePos = pointer ? *pointer : ImVec2(-FLT_MAX, -FLT_MAX);
    ImGui::NewFrame();
    open_ = true;
    ++opened_;
}

ImDrawData* UiFrame::close() {
    if (!open_)
        return nullptr;
    ImGui::Render();
    open_ = false;
    ++closed_;
    return ImGui::GetDrawData();
}

}  // namespace veldra
