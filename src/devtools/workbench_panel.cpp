#include "devtools/workbench_panel.h"

#include <imgui.h>
#include <imgui_stdlib.h>

#include <algorithm>

#include "devtools/debug_tools.h"
#include "devtools/panel_style.h"
#include "runtime/number_format.h"
#include "runtime/runtime.h"
#include "trials/simulation_state.h"

namespace veldra {

namespace {

constexpr int CURVE_SAMPLES = 41;
const ImVec4 PROBLEM_COLOR{0.96f, 0.45f, 0.40f, 1};
const ImVec4 GOOD_COLOR{0.55f, 0.85f, 0.55f, 1};

std::string joined(const std::vector<std::string>& lines) {
    std::string all;
    for (const std::string& line : lines)
        all += (all.empty() ? "" : "\n") + line;
    return all;
}

}  // namespace

bool obj_formula_workbench::showing() const {
    const obj_debug_tools* tools = find_debug_tools(runtime());
    return tools && tools->workbench_open && debug_panels_showing(runtime());
}

ConfigMethodKind obj_formula_workbench::kind() const {
    const obj_debug_tools* tools = find_debug_tools(runtime());
    if (!tools || !tools->context.sim.configs.loaded())
        return ConfigMethodKind::plain;
    const ConfigMethod* method = find_configuration_method(tools->context.sim.configs.get(), key);
    return method ? method->kind() : ConfigMethodKind::plain;
}

void obj_formula_workbench::pick(const std::string& picked) {
    key = picked;
    const obj_debug_tools* tools = find_debug_tools(runtime());
    const ConfigMethod* method =
        tools && tools->context.sim.configs.loaded()
            ? find_configuration_method(tools->context.sim.configs.get(), key)
            : nullptr;
    text = method ? std::string(method->source()) : std::string();
    plotted_row = 0;
    recheck();
}

void obj_formula_workbench::recheck() {
    checked = check_formula(key, text);
    table = {};
    const obj_debug_tools* tools = find_debug_tools(runtime());
    if (checked.compiled && tools && tools->context.sim.configs.loaded())
        table = formula_table(tools->context.sim.configs.get(), kind(), *checked.compiled, third);
}

void obj_formula_workbench::apply() {
    obj_debug_tools& tools = *find_debug_tools(runtime());
    const ConfigurationLoad load =
        edits.apply(tools.context.sim.configs, tools.context.files, key, text);
    if (load.applied)
        re_evaluate_humans(runtime());
    status = load.applied ? "Applied " + key + " to the running trial."
                          : "Not applied: " + joined(load.problems);
}

void obj_formula_workbench::revert() {
    obj_debug_tools& tools = *find_debug_tools(runtime());
    const ConfigurationLoad load = edits.revert(tools.context.sim.configs, tools.context.files);
    if (load.applied)
        re_evaluate_humans(runtime());
    status = load.applied ? "Reverted to the configuration files as saved."
                          : "Not reverted: " + joined(load.problems);
    if (load.applied)
        pick(key);
}

void obj_formula_workbench::save() {
    obj_debug_tools& tools = *find_debug_tools(runtime());
    const std::string problem = edits.save_as(tools.context.files, save_path);
    status = problem.empty()
                 ? "Saved as \"" + save_path + "\"; start with config=" + save_path + " to use it."
                 : "Not saved: " + problem;
}

void obj_formula_workbench::on_step() {
    if (!showing() || !overlay_frame_open())
        return;
    if (key.empty()) {
        // The action weights are what a designer comes for most.
        const auto& keys = callable_configuration_keys();
        const auto first_weight = std::find_if(keys.begin(), keys.end(), [](const std::string& k) {
            return k.starts_with("weight_");
        });
        if (first_weight != keys.end())
            pick(*first_weight);
    }
    draw();
}

void obj_formula_workbench::draw() {
    ControlRecord record;
    panel_style::begin_place(panel_style::WORKBENCH);
    panel_style::push_style();
    if (ImGui::Begin("Formula workbench", nullptr, panel_style::FIXED_WINDOW)) {
        record.texts.emplace_back("Formula workbench");
        if (ImGui::BeginCombo("Key", key.c_str())) {
            for (const std::string& candidate : callable_configuration_keys())
                if (ImGui::Selectable(candidate.c_str(), candidate == key))
                    pick(candidate);
            ImGui::EndCombo();
        }
        remember_item(record, "Key");
        if (ImGui::InputTextMultiline("Formula", &text, ImVec2(-80, 70)))
            recheck();
        remember_item(record, "Formula");
        if (checked.problem) {
            const std::string message = describe_formula_problem(*checked.problem);
            ImGui::TextColored(PROBLEM_COLOR, "%s", message.c_str());
            record.texts.push_back(message);
        } else {
            ImGui::TextColored(GOOD_COLOR, "Compiles.");
            record.texts.emplace_back("Compiles.");
        }
        const ConfigMethodKind k = kind();
        if (k != ConfigMethodKind::plain) {
            const char* name = k == ConfigMethodKind::weight ? "WEIGHT"
                               : k == ConfigMethodKind::time ? "TIME"
                                                             : "DISTANCE";
            ImGui::SetNextItemWidth(200);
            if (ImGui::InputDouble(name, &third, 0.1, 0.5, "%.2f"))
                recheck();
            remember_item(record, name);
        }
        if (!table.rows.empty()) {
            ImGui::PushStyleColor(ImGuiCol_Text, ImGui::GetStyleColorVec4(ImGuiCol_TextDisabled));
            ImGui::TextWrapped(
                "One trait at each offered value, the others at 0; click a row "
                "to plot it.");
            ImGui::PopStyleColor();
        }
        if (!table.rows.empty() &&
            ImGui::BeginTable("values", 1 + static_cast<int>(std::size(WORKBENCH_ENERGIES)),
                              ImGuiTableFlags_Borders | ImGuiTableFlags_SizingStretchSame |
                                  ImGuiTableFlags_ScrollY,
                              ImVec2(0, 150))) {
            ImGui::TableSetupScrollFreeze(0, 1);
            ImGui::TableSetupColumn("trait");
            for (double energy : WORKBENCH_ENERGIES)
                ImGui::TableSetupColumn(
                    ((energy == 0 ? "energy " : "") + number_to_string(energy)).c_str());
            ImGui::TableHeadersRow();
            for (std::size_t r = 0; r < table.rows.size(); ++r) {
                const FormulaTable::Row& row = table.rows[r];
                ImGui::TableNextRow();
                ImGui::TableNextColumn();
                if (ImGui::Selectable(row.label.c_str(), r == plotted_row,
                                      ImGuiSelectableFlags_SpanAllColumns))
                    plotted_row = r;
                for (double value : row.values) {
                    ImGui::TableNextColumn();
                    ImGui::TextUnformatted(number_to_string(value).c_str());
                }
            }
            ImGui::EndTable();
        }
        if (checked.compiled && plotted_row < table.rows.size()) {
            const std::vector<float> curve = formula_energy_curve(
                k, *checked.compiled, table.rows[plotted_row].traits, third, CURVE_SAMPLES);
            const std::string caption = table.rows[plotted_row].label + ", energy 0 to 1";
            ImGui::PlotLines("##curve", curve.data(), static_cast<int>(curve.size()), 0,
                             caption.c_str(), FLT_MAX, FLT_MAX,
                             ImVec2(ImGui::GetContentRegionAvail().x, 50));
        }
        if (!checked.compiled)
            ImGui::BeginDisabled();
        if (ImGui::Button("Apply to trial"))
            apply();
        remember_item(record, "Apply to trial");
        if (!checked.compiled)
            ImGui::EndDisabled();
        ImGui::SameLine();
        if (!edits.changed())
            ImGui::BeginDisabled();
        if (ImGui::Button("Revert"))
            revert();
        remember_item(record, "Revert");
        ImGui::SetNextItemWidth(360);
        ImGui::InputText("##save_path", &save_path);
        remember_item(record, "save path");
        ImGui::SameLine();
        if (ImGui::Button("Save as"))
            save();
        remember_item(record, "Save as");
        if (!edits.changed())
            ImGui::EndDisabled();
        if (!status.empty()) {
            ImGui::TextWrapped("%s", status.c_str());
            record.texts.push_back(status);
        }
    }
    ImGui::End();
    panel_style::pop_style();
    controls_ = std::move(record);
}

}  // namespace veldra
