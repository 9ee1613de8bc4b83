#pragma once
// The entity in the first room that brings the game up in its create event, in the fixed order
// the later steps rely on (each reads globals set by an earlier one), and then picks the mode.

#include "runtime/instance.h"

namespace veldra {

struct AppState;

class obj_init : public Instance {
    VELDRA_OBJECT(obj_init, Instance)
public:
    explicit obj_init(AppState& app) : app_(app) {}
    void on_create() override;

private:
    AppState& app_;
};

}  // namespace veldra
