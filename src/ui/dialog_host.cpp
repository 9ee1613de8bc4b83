#include "ui/dialog_host.h"

#include <memory>

#include "runtime/runtime.h"
#include "runtime/services.h"
#include "ui/imgui_dialogs.h"

namespace veldra {

void obj_dialog_host::on_draw_gui_end() {
    if (overlay_frame_open())
        dialogs_.draw();
}

bool obj_dialog_host::showing() const {
    return dialogs_.waiting() > 0;
}

const ControlRecord& obj_dialog_host::controls() const {
    return dialogs_.last_frame();
}

ImGuiDialogs& install_window_dialogs(Runtime& runtime) {
    auto dialogs = std::make_unique<ImGuiDialogs>();
    ImGuiDialogs& installed = *dialogs;
    runtime.services().dialogs = std::move(dialogs);
    // A second window replaces the dialogs; the old host would draw ones that are gone.
    runtime.for_each<obj_dialog_host>(
        [&runtime](obj_dialog_host& host) { runtime.instance_destroy(host.id()); });
    runtime.instance_create<obj_dialog_host>(0, 0, "", installed);
    return installed;
}

}  // namespace veldra
