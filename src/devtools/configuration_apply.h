#pragma once
// Putting a configuration into a running game only once it has loaded on its own. Loading
// straight into the live state would leave the base file in effect when a custom file fails;
// a developer who applies a broken edit, or saves a file half-typed, keeps the configuration the
// trial was running with instead, and reads why in the log.

#include <string>
#include <vector>

#include "config/game_configurations.h"

namespace veldra {

class Files;
class Runtime;

struct ConfigurationLoad {
    bool applied = false;
    // What the refused load logged as warnings and errors, without their timestamps.
    std::vector<std::string> problems;
};

// Loads the base file and `custom_name` ("" for none) into a scratch state first; only when
// both load does it reload `live` from them. The files are read twice on purpose: a state's
// formulas read the variables of that state, so the scratch configuration cannot be moved in.
ConfigurationLoad apply_configuration_safely(ConfigsState& live, Files& files,
                                             const std::string& custom_name);

// Has every human read its weights from the configuration now in effect, instead of when its
// energy next changes them: an applied formula shows in the next decision.
void re_evaluate_humans(Runtime& runtime);

// The custom file in effect in `state` ("" when only the base file is).
std::string custom_configuration_in_effect(const ConfigsState& state);

}  // namespace veldra
