#include "config/configs_loader.h"

#include <cstdlib>
#include <nlohmann/json.hpp>

#include "config/config_formula_check.h"
#include "config/json_comments.h"
#include "runtime/assertion.h"
#include "runtime/callstack.h"
#include "runtime/files.h"
#include "runtime/log.h"
#include "runtime/once.h"
#include "runtime/paths.h"
#include "serial/json.h"
#include "util/text.h"

namespace veldra {

namespace {

using Json = nlohmann::ordered_json;

// The runtime's type name of a parsed JSON value.
std::string json_type_name(const Json& value) {
    switch (value.type()) {
        case Json::value_t::object:
            return "struct";
        case Json::value_t::array:
            return "array";
        case Json::value_t::string:
            return "string";
        case Json::value_t::boolean:
            return "bool";
        case Json::value_t::number_integer:
        case Json::value_t::number_unsigned:
        case Json::value_t::number_float:
            return "number";
        default:
            return "undefined";
    }
}

// The kind a method key gets, tested in this order.
ConfigMethodKind config_method_kind_of(std::string_view key) {
    if (key == "current_action_weight_modifier")
        return ConfigMethodKind::weight;
    if (key == "trial_score")
        return ConfigMethodKind::time;
    if (key.starts_with("target_weight_"))
        return ConfigMethodKind::distance;
    return ConfigMethodKind::plain;
}

// Reads one key into its typed field. Returns false (after logging) when the value does not fit.
class FieldReader {
public:
    FieldReader(const std::string& path, ExpressionGlobals& globals)
        : path_(path), globals_(globals) {}

    bool read(std::string_view key, std::string_view expected, const Json& value, double& field) {
        if (!value.is_number())
            return wrong_type(key, expected, value);
        field = value.get<double>();
        return true;
    }
    bool read(std::string_view key, std::string_view expected, const Json& value, bool& field) {
        if (!value.is_boolean())
            return wrong_type(key, expected, value);
        field = value.get<bool>();
        return true;
    }
    bool read(std::string_view key, std::string_view expected, const Json& value,
              std::string& field) {
        if (!value.is_string())
            return wrong_type(key, expected, value);
        field = value.get<std::string>();
        return true;
    }
    bool read(std::string_view key, std::string_view expected, const Json& value, Value& field) {
        if (!value.is_array())
            return wrong_type(key, expected, value);
        field = json_to_value(value);
        return true;
    }
    // A formula is written as a string; a plain number is taken as the constant formula.
    bool read(std::string_view key, std::string_view, const Json& value, ConfigMethod& field) {
        std::string source;
        if (value.is_string())
            source = value.get<std::string>();
        else if (value.is_number())
            source = value.dump();
        else
            return wrong_type(key, "string", value);
        // Every variable compiles: one the key is not given reads NaN, which the check of the
        // formulas' results refuses where a branch that is taken reads it.
        auto compiled = ExpressionCompiler().compile_expression_from_string(source);
        if (auto* error = std::get_if<ExpressionError>(&compiled)) {
            log_error("Configuration file \"" + path_ + "\" variable \"" + std::string(key) +
                      "\" has an expression that does not compile: " + error->message +
                      " at column " + std::to_string(error->column) + ".\n    " + source +
                      "\n    " + std::string(error->column > 0 ? error->column - 1 : 0, ' ') + "^");
            return false;
        }
        field = ConfigMethod(std::move(std::get<CompiledExpression>(compiled)),
                             config_method_kind_of(key), &globals_);
        return true;
    }

private:
    bool wrong_type(std::string_view key, std::string_view expected, const Json& value) {
        log_error("Configuration file \"" + path_ + "\" variable \"" + std::string(key) +
                  "\" is of an unexpected type \"" + json_type_name(value) + "\". Expected \"" +
                  std::string(expected) + "\".");
        return false;
    }
    const std::string& path_;
    ExpressionGlobals& globals_;
};

}  // namespace

ExprVarMask config_formula_variables(std::string_view key) {
    ExprVarMask given = expr_var_bit(ExprVar::O) | expr_var_bit(ExprVar::C) |
                        expr_var_bit(ExprVar::E) | expr_var_bit(ExprVar::A) |
                        expr_var_bit(ExprVar::N);
    const ConfigMethodKind kind = config_method_kind_of(key);
    const bool with_energy = kind != ConfigMethodKind::plain || key.starts_with("weight_") ||
                             key == "exchange_give_weight" || key == "exchange_take_weight";
    if (with_energy)
        given |= expr_var_bit(ExprVar::ENERGY_LEVEL);
    if (kind == ConfigMethodKind::weight)
        given |= expr_var_bit(ExprVar::WEIGHT);
    if (kind == ConfigMethodKind::time)
        given |= expr_var_bit(ExprVar::TIME);
    if (kind == ConfigMethodKind::distance)
        given |= expr_var_bit(ExprVar::DISTANCE);
    return static_cast<ExprVarMask>(given);
}

std::optional<GameConfigurations> _load_game_configurations_from_file(Files& files,
                                                                      const std::string& path,
                                                                      bool require_all,
                                                                      ExpressionGlobals& globals) {
    const FileText text = files.read(path, MAX_CONFIGURATION_FILE_BYTES);
    // Only a missing file is said not to exist: of a directory or a device the reason says
    // what it is instead.
    if (!text && text.error == FILE_MISSING_REASON) {
        log_error("Configuration file doesn't exist (" + path + ").");
        return std::nullopt;
    }
    if (!text) {
        log_error("Failed to read configuration file \"" + path + "\".");
        log_error("\"" + path + "\" " + text.error + ".");
        return std::nullopt;
    }
    // Comments are cut from the ends of lines only, so lines and columns still match the file.
    const JsonDocument document = json_parse_document(_json_remove_comments(*text.text));
    if (!document) {
        log_error("Failed to read the configuration file \"" + path + "\".");
        log_error("\"" + path + "\", " + document.error + ".");
        return std::nullopt;
    }
    const Json& root = document.json;
    if (!root.is_object()) {
        log_error("Configuration file \"" + path +
                  "\" is in an unexpected format: " + json_type_name(root) + ".");
        return std::nullopt;
    }

    GameConfigurations loaded;
    loaded.by_name = json_to_value(root);
    FieldReader reader(path, globals);
    bool ok = true;
    visit_config_fields(loaded, [&](std::string_view key, std::string_view expected,
                                    ConfigRule rule, auto& field) {
        if (!ok)
            return;
        auto it = root.find(std::string(key));
        if (it == root.end()) {
            if (require_all) {
                log_error("Configuration file \"" + path + "\" doesn't define the variable \"" +
                          std::string(key) + "\".");
                ok = false;
            }
            return;
        }
        ok = reader.read(key, expected, *it, field);
        if (const std::string problem = config_rule_problem(rule, *it); ok && !problem.empty()) {
            log_error("Configuration file \"" + path + "\" variable \"" + std::string(key) + "\" " +
                      problem + ", not " +
                      it->dump(-1, ' ', false, Json::error_handler_t::replace).substr(0, 80) + ".");
            ok = false;
        }
    });
    if (!ok)
        return std::nullopt;
    return loaded;
}

namespace {

// Copies every key that `custom` defines over `base`.
void merge_game_configurations(GameConfigurations& base, const GameConfigurations& custom) {
#define VELDRA_MERGE_CONFIG_FIELD(key, type, rule, meaning) \
    if (custom.by_name.has(#key))                           \
        base.key = custom.key;
    VELDRA_GAME_CONFIGURATION_KEYS(VELDRA_MERGE_CONFIG_FIELD)
#undef VELDRA_MERGE_CONFIG_FIELD
    for (const std::string& name : custom.by_name.field_names())
        base.by_name.set(name, custom.by_name.get(name));
}

// A copy whose keys by name are its own: a struct Value is shared between copies, and a merge
// that is then refused must leave the base as it was.
GameConfigurations copy_of(const GameConfigurations& configs) {
    GameConfigurations copy = configs;
    copy.by_name = Value::make_struct();
    for (const std::string& name : configs.by_name.field_names())
        copy.by_name.set(name, configs.by_name.get(name));
    return copy;
}

// Nothing, with the problem logged, when one of the formulas gives no number for the traits
// the configuration offers.
std::optional<GameConfigurations> refuse_formulas_without_numbers(
    std::optional<GameConfigurations> configs) {
    if (const std::string problem = config_formulas_problem(*configs); !problem.empty()) {
        log_error(problem);
        return std::nullopt;
    }
    return configs;
}

}  // namespace

void initialize_configs(ConfigsState& state) {
    VELDRA_SCOPE();
    if (!once_only_first_call(state.initialized))
        return;
    state.configs.reset();
}

const GameConfigurations& ConfigsState::get() const {
    VELDRA_ASSERT(configs, "Configs read before the configurations were loaded: start-up order?");
    return *configs;
}

Value ConfigsState::value(std::string_view name) const {
    return configs ? configs->by_name.get(name) : Value();
}

bool reload_game_configurations(ConfigsState& state, Files& files,
                                const std::string& custom_configuration_name) {
    const std::string base_path = make_included_file_filename("configurations.json");
    auto base =
        _load_game_configurations_from_file(files, base_path, true, state.expression_globals);
    if (base)
        base = refuse_formulas_without_numbers(std::move(base));
    if (!base) {
        log_error("Failed to load main configs from \"" + base_path + "\".");
        return false;
    }
    state.configs = std::move(base);
    state.loaded_paths = {base_path};
    state.custom_failed = false;
    log("Loaded base configurations from \"" + base_path + "\"");

    std::string custom_name = string_trim(custom_configuration_name);
    if (custom_name.empty()) {
        log("No custom configurations were loaded, because none were specified. Only the base "
            "configurations will "
            "be in effect.");
        return true;
    }
    if (!custom_name.ends_with(".json"))
        custom_name += ".json";
    const std::string custom_path = resolve_user_path(custom_name);
    auto custom =
        _load_game_configurations_from_file(files, custom_path, false, state.expression_globals);
    // The custom values are checked together with the base ones they meet: new options with
    // the base formulas, new formulas with the base options.
    std::optional<GameConfigurations> merged;
    if (custom) {
        merged = copy_of(*state.configs);
        merge_game_configurations(*merged, *custom);
        merged = refuse_formulas_without_numbers(std::move(merged));
    }
    if (!merged) {
        log_error("Failed to load custom configs from \"" + custom_path + "\".");
        state.custom_failed = true;
        return true;
    }
    state.configs = std::move(merged);
    state.loaded_paths.push_back(custom_path);
    log("Loaded custom configurations from \"" + custom_path +
        "\". All fields that are defined in this configuration were overwritten over the base "
        "configurations.");
    return true;
}

}  // namespace veldra
