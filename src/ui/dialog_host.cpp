#include "ui/dialog_host.h"

#include <imgui.h>

#include <memory>

#include "runtime/runtime.h"
#include "runtime/services.h"
#include "ui/imgui_adapter.h"
#include "ui/imgui_dialogs.h"

namespace veldra {

void obj_dialog_host::on_draw_gui_end() {
    auto* dialogs = dynamic_cast<ImGuiDialogs*>(runtime().services().dialogs.get());
    if (dialogs && imgui_adapter::frame_open())
        dialogs->draw();
}

void install_window_dialogs(Runtime& runtime) {
    runtime.services().dialogs = std::make_unique<ImGuiDialogs>();
    if (runtime.instance_number<obj_dialog_host>() == 0)
        runtime.instance_create<obj_dialog_host>(0, 0, "");
}

}  // namespace veldra
