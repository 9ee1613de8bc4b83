#pragma once
// The formula workbench's panel: pick a formula of the configuration, edit it and see at once
// whether it compiles (with the line and column of a mistake), its values over the offered
// traits and energy as a table and as a plot, then apply it to the running trial, revert it,
// or save the edited configuration as a custom file. Opened from the debug menu.

#include <string>

#include "devtools/formula_edits.h"
#include "devtools/formula_workbench.h"
#include "ui/overlay.h"

namespace veldra {

class obj_formula_workbench : public obj_overlay {
    VELDRA_OBJECT(obj_formula_workbench, obj_overlay)
public:
    obj_formula_workbench() { persistent = true; }
    void on_step() override;

    OverlayLayer overlay_layer() const override { return OverlayLayer::panel; }
    bool showing() const override;
    const ControlRecord& controls() const override { return controls_; }

    // Picks `key` and loads its formula as the configuration in effect has it.
    void pick(const std::string& key);
    // Compiles the edited text and recomputes the table; called whenever the text changes.
    void recheck();
    void apply();
    void revert();
    void save();

    std::string key;
    std::string text;
    std::string save_path = "formula_workbench_custom.json";
    double third = 0.5;  // the key's third argument, where it has one
    std::size_t plotted_row = 0;
    CheckedFormula checked;
    FormulaTable table;
    std::string status;  // what the last apply, revert or save did
    FormulaEdits edits;

private:
    void draw();
    ConfigMethodKind kind() const;
    ControlRecord controls_;
};

}  // namespace veldra
