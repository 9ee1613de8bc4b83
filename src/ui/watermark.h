#pragma once
// The build-information watermark: the program's name, version and build in a corner, faint,
// so a screenshot or a video of a session says which build it came from.

#include <string>

#include "runtime/instance.h"
#include "runtime/object_type.h"

namespace veldra {

class obj_watermark : public Instance {
    VELDRA_OBJECT(obj_watermark, Instance)
public:
    explicit obj_watermark(std::string text) : text(std::move(text)) {}
    void on_create() override { persistent = true; }
    void on_draw_gui() override;

    std::string text;
};

}  // namespace veldra
