#include "config/program_parameters.h"

namespace veldra {

std::optional<std::string>* ProgramParameters::field(std::string_view name) {
#define VELDRA_FIELD_BY_NAME(param, help) \
    if (name == #param)                   \
        return &param;
    VELDRA_PROGRAM_PARAMETERS(VELDRA_FIELD_BY_NAME)
#undef VELDRA_FIELD_BY_NAME
    return nullptr;
}

const std::vector<ProgramParameterInfo>& program_parameter_table() {
    static const std::vector<ProgramParameterInfo> table = {
#define VELDRA_PARAMETER_INFO(name, help) {#name, help},
        VELDRA_PROGRAM_PARAMETERS(VELDRA_PARAMETER_INFO)
#undef VELDRA_PARAMETER_INFO
    };
    return table;
}

ProgramParameters get_program_parameters(const std::vector<std::string>& arguments) {
    ProgramParameters params;
    for (const std::string& argument : arguments) {
        // Pieces after the second are dropped: "lang=de=x" sets lang to "de".
        auto first = argument.find('=');
        if (first == std::string::npos)
            continue;
        auto second = argument.find('=', first + 1);
        std::string key = argument.substr(0, first);
        std::string value = argument.substr(
            first + 1, second == std::string::npos ? std::string::npos : second - first - 1);
        if (auto* slot = params.field(key))
            *slot = std::move(value);
    }
    return params;
}

}  // namespace veldra
