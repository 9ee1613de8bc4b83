#pragma once
// What the formula workbench has changed in the running game. An applied edit is the custom
// file in effect with one formula replaced, written to debug/formula_workbench.json (beside the
// debug settings) and loaded as the custom file; further edits build on it. Reverting loads
// what was in effect before the first edit. Saving copies the edited configuration to a file of
// the developer's choosing, which then works as `config=` like any custom file.

#include <optional>
#include <string>

#include "devtools/configuration_apply.h"

namespace veldra {

class Files;

inline constexpr const char* WORKBENCH_CONFIGURATION_PATH = "debug/formula_workbench.json";

// The JSON text of the custom file at `custom_path` ("" for none: an empty object) with `key`
// set to `formula`; nullopt with the reason in `problem` when that file cannot be read.
std::optional<std::string> configuration_with_formula(Files& files, const std::string& custom_path,
                                                      const std::string& key,
                                                      const std::string& formula,
                                                      std::string& problem);

class FormulaEdits {
public:
    // Refuses a formula that does not compile without touching anything.
    ConfigurationLoad apply(ConfigsState& live, Files& files, const std::string& key,
                            const std::string& formula);
    // Back to the custom file in effect before the first apply.
    ConfigurationLoad revert(ConfigsState& live, Files& files);
    // Writes the edited configuration to `path`; "" on success, else why not. The base
    // configuration file is never overwritten.
    std::string save_as(Files& files, const std::string& path) const;

    bool changed() const { return original_custom_.has_value(); }

private:
    std::optional<std::string> original_custom_;
    std::string edited_json_;
};

}  // namespace veldra
