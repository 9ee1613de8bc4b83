#pragma once
// The loading status: one line in the middle of the screen while the player waits ("Loading...",
// "Connecting...", an auto run's "Run 12 of 729"), with a progress bar when the amount of work
// is known. Persistent: it lives from start-up to the end.

#include <optional>
#include <string>

#include "runtime/instance.h"
#include "runtime/object_type.h"

namespace veldra {

class obj_loading_status : public Instance {
    VELDRA_OBJECT(obj_loading_status, Instance)
public:
    void on_create() override;
    void on_draw_gui() override;

    // Shows `text`, with a bar filled to `progress` (0 to 1) when given.
    void set(std::string text, std::optional<double> progress = std::nullopt);
    void clear();

    const std::string& text() const { return text_; }
    std::optional<double> progress() const { return progress_; }

private:
    std::string text_;
    std::optional<double> progress_;
};

}  // namespace veldra
