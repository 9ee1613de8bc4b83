#include "startup/outbox_mode.h"

#include <memory>
#include <optional>
#include <string>

#include "config/run_files_folder.h"
#include "net/obj_api.h"
#include "net/outbox.h"
#include "net/outbox_sending.h"
#include "runtime/log.h"
#include "runtime/utf8_path.h"
#include "startup/app_state.h"
#include "startup/parameter_values.h"
#include "startup/run_program.h"
#include "startup/server_connection.h"

namespace veldra {

void start_submit_outbox_mode(AppState& app) {
    const std::optional<bool> wanted = parse_switch_value(*app.params.submit_outbox);
    if (!wanted)
        return bad_parameter(app, "submit_outbox", *app.params.submit_outbox, "must be 0 or 1.");
    if (!*wanted)
        return end_program(app, 0);
    if (!is_remote_defined(app)) {
        log_error(no_server_configured_text());
        return end_program(app, 2);
    }
    auto outbox =
        std::make_shared<Outbox>(outbox_folder(run_files_folder(app.params.log_output_file)));
    const std::string folder = path_utf8(outbox->folder());
    outbox_send_waiting(outbox, std::nullopt, outbox_submit_with(api_client(app)))
        .and_then([&app, folder](const OutboxSendResult& result) {
            for (const std::string& problem : result.problems)
                log_warning("Outbox: " + problem);
            log("Sent " + std::to_string(result.sent) + " trial results from \"" + folder + "\"; " +
                std::to_string(result.waiting) + " still waiting.");
            end_program(app, result.waiting > 0 || !result.problems.empty() ? 1 : 0);
        });
}

}  // namespace veldra
