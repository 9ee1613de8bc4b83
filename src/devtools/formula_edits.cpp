#include "devtools/formula_edits.h"

#include "config/json_comments.h"
#include "devtools/formula_workbench.h"
#include "runtime/file_io.h"
#include "runtime/files.h"
#include "runtime/paths.h"
#include "runtime/utf8_path.h"
#include "serial/json.h"

namespace veldra {

std::optional<std::string> configuration_with_formula(Files& files, const std::string& custom_path,
                                                      const std::string& key,
                                                      const std::string& formula,
                                                      std::string& problem) {
    nlohmann::ordered_json root = nlohmann::ordered_json::object();
    if (!custom_path.empty()) {
        const FileText text = files.read(custom_path, MAX_CONFIGURATION_FILE_BYTES);
        if (!text) {
            problem = "\"" + custom_path + "\" " + text.error;
            return std::nullopt;
        }
        JsonDocument document = json_parse_document(_json_remove_comments(*text.text));
        if (!document || !document.json.is_object()) {
            problem = "\"" + custom_path + "\" is no configuration: " +
                      (document ? std::string("its root is not an object") : document.error);
            return std::nullopt;
        }
        root = std::move(document.json);
    }
    root[key] = formula;
    return root.dump(4) + "\n";
}

ConfigurationLoad FormulaEdits::apply(ConfigsState& live, Files& files, const std::string& key,
                                      const std::string& formula) {
    ConfigurationLoad refused;
    const CheckedFormula checked = check_formula(key, formula);
    if (checked.problem) {
        refused.problems.push_back(key + ": " + describe_formula_problem(*checked.problem));
        return refused;
    }
    std::string problem;
    const auto json = configuration_with_formula(files, custom_configuration_in_effect(live), key,
                                                 formula, problem);
    if (!json) {
        refused.problems.push_back(problem);
        return refused;
    }
    files.create_directories(path_utf8(utf8_path(WORKBENCH_CONFIGURATION_PATH).parent_path()));
    if (problem = files.write(WORKBENCH_CONFIGURATION_PATH, *json); !problem.empty()) {
        refused.problems.push_back("\"" + std::string(WORKBENCH_CONFIGURATION_PATH) +
                                   "\" was not written: " + problem);
        return refused;
    }
    const std::string before = custom_configuration_in_effect(live);
    ConfigurationLoad load = apply_configuration_safely(live, files, WORKBENCH_CONFIGURATION_PATH);
    if (load.applied) {
        if (!original_custom_)
            original_custom_ = before;
        edited_json_ = *json;
    }
    return load;
}

ConfigurationLoad FormulaEdits::revert(ConfigsState& live, Files& files) {
    if (!original_custom_)
        return {true, {}};
    ConfigurationLoad load = apply_configuration_safely(live, files, *original_custom_);
    if (load.applied) {
        original_custom_.reset();
        edited_json_.clear();
    }
    return load;
}

std::string FormulaEdits::save_as(Files& files, const std::string& path) const {
    if (!original_custom_)
        return "nothing is edited yet: apply an edit first";
    if (path.empty())
        return "the file needs a name";
    const std::string base = make_included_file_filename("configurations.json");
    if (same_file(path, base))
        return "\"" + path + "\" is the base configuration, which stays as shipped";
    const auto parent = utf8_path(path).parent_path();
    if (!parent.empty())
        files.create_directories(path_utf8(parent));
    if (std::string problem = files.write(path, edited_json_); !problem.empty())
        return "\"" + path + "\" was not written: " + problem;
    return "";
}

}  // namespace veldra
