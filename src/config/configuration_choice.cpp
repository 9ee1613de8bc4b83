#include "config/configuration_choice.h"

#include "async/dialog_promises.h"
#include "config/debug_settings.h"
#include "config/program_parameters.h"
#include "util/text.h"

namespace veldra {

namespace {

// Asks the developer for a custom file name. Fulfilled with the name, "" for none.
Promise<std::string> _debug_ask_custom_config_filename(DebugSettings& debugs, Dialogs& dialogs,
                                                       Files& files) {
    return dialog_get_string(
               dialogs,
               "Enter custom configuration's relative filename. You can leave out the file "
               "extension (e.g. .json)."
               "\n\nThese custom will partially or fully overwrite the default configurations."
               "\n\nLeave blank or cancel to use default configurations as is.",
               debugs.custom_config)
        .and_then([&debugs, &files](const std::string& answer) {
            std::string name = string_trim(answer);
            debugs.custom_config = name;
            save_active_debug_settings(files, debugs);
            return name;
        })
        // A cancelled question (always, in headless runs) keeps the stored answer.
        .and_cancelled([] { return std::string(); });
}

}  // namespace

Promise<std::string> ask_custom_configuration_name(const ProgramParameters& params,
                                                   DebugSettings& debugs, Dialogs& dialogs,
                                                   Files& files) {
    if (params.config)
        return promise_resolve(*params.config);
    return _debug_ask_custom_config_filename(debugs, dialogs, files);
}

}  // namespace veldra
