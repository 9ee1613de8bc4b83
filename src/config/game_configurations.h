#pragma once
// `Configs`: the loaded configuration. Hot paths read typed fields (`configs->trial_time`,
// `configs->weight_explore(traits, energy)`); keys added by a custom file and the arrays are
// also reachable by name through `configs.value(name)`.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "async/promise.h"
#include "config/config_method.h"
#include "config/config_value_rules.h"
#include "config/game_configuration_keys.h"
#include "runtime/value.h"

namespace veldra {

class Files;

namespace detail {
using ConfigNumber = double;
using ConfigBool = bool;
using ConfigString = std::string;
using ConfigArray = Value;
using ConfigMethodField = ConfigMethod;
}  // namespace detail

#define VELDRA_CONFIG_FIELD_TYPE_NUMBER detail::ConfigNumber
#define VELDRA_CONFIG_FIELD_TYPE_BOOL detail::ConfigBool
#define VELDRA_CONFIG_FIELD_TYPE_STRING detail::ConfigString
#define VELDRA_CONFIG_FIELD_TYPE_ARRAY detail::ConfigArray
#define VELDRA_CONFIG_FIELD_TYPE_METHOD detail::ConfigMethodField

struct GameConfigurations {
#define VELDRA_DECLARE_CONFIG_FIELD(key, type, rule, meaning) VELDRA_CONFIG_FIELD_TYPE_##type key{};
    VELDRA_GAME_CONFIGURATION_KEYS(VELDRA_DECLARE_CONFIG_FIELD)
#undef VELDRA_DECLARE_CONFIG_FIELD

    // Every key read from the files, by name: numbers, bools, strings and arrays as read, method
    // keys as their expression text, plus any keys the files add beyond the schema.
    Value by_name = Value::make_struct();
};

namespace detail {
inline constexpr std::string_view config_type_name_NUMBER = "number";
inline constexpr std::string_view config_type_name_BOOL = "bool";
inline constexpr std::string_view config_type_name_STRING = "string";
inline constexpr std::string_view config_type_name_ARRAY = "array";
inline constexpr std::string_view config_type_name_METHOD = "method";
}  // namespace detail

// Calls visit(name, type_name, rule, field) for every schema key in table order; type_name is the
// runtime's type name the file's value must have ("number", "bool", "string", "array", "method").
// `Configs` is GameConfigurations, const or not.
template <class Configs, class Visitor>
void visit_config_fields(Configs& configs, Visitor&& visit) {
#define VELDRA_VISIT_CONFIG_FIELD(key, type, rule, meaning) \
    visit(#key, detail::config_type_name_##type, ConfigRule::rule, configs.key);
    VELDRA_GAME_CONFIGURATION_KEYS(VELDRA_VISIT_CONFIG_FIELD)
#undef VELDRA_VISIT_CONFIG_FIELD
}

inline constexpr int GAME_CONFIGURATION_KEY_COUNT = 0
#define VELDRA_COUNT_CONFIG_FIELD(key, type, rule, meaning) +1
    VELDRA_GAME_CONFIGURATION_KEYS(VELDRA_COUNT_CONFIG_FIELD)
#undef VELDRA_COUNT_CONFIG_FIELD
    ;

// The Configs global: the loaded configuration and the block of variables its formulas read.
// The formulas point at that block, so the state never moves.
struct ConfigsState {
    ConfigsState() = default;
    ConfigsState(const ConfigsState&) = delete;
    ConfigsState& operator=(const ConfigsState&) = delete;

    bool loaded() const { return configs.has_value(); }
    // Asking before the first successful load is a programming fault.
    const GameConfigurations& get() const;
    const GameConfigurations* operator->() const { return &get(); }
    // A key by name (schema or added by a file); undefined when no file defines it.
    Value value(std::string_view name) const;

    bool initialized = false;
    std::optional<GameConfigurations> configs;
    ExpressionGlobals expression_globals;
    // The files in effect after the last reload, base first: what a run's results depend on.
    std::vector<std::string> loaded_paths;
    bool custom_failed = false;
};

// Once-only: leaves Configs undefined until the first reload.
void initialize_configs(ConfigsState& state);
// Loads the base file and, unless the name is empty, the custom file (".json" may be left
// out), resolved as a path the user gave. Returns false when the base file failed
// (Configs then keeps what it had). A failing custom file leaves the base in effect and is
// remembered in ConfigsState::custom_failed, so that a batch the user meant to run with it can
// refuse to start. Both are read through `files`.
bool reload_game_configurations(ConfigsState& state, Files& files,
                                const std::string& custom_configuration_name);

}  // namespace veldra
