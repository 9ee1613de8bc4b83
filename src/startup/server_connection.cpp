#include "startup/server_connection.h"

#include "net/obj_api.h"
#include "runtime/log.h"
#include "runtime/runtime.h"
#include "startup/app_state.h"
#include "ui/loading_status.h"

namespace veldra {

namespace {

obj_loading_status* loading_status(AppState& app) {
    return app.runtime.find_as<obj_loading_status>(app.loading_status);
}

}  // namespace

void create_api_client(AppState& app) {
    std::string url = app.api_env.remote_url.value_or("");
    if (!url.empty() && url.back() != '/')
        url += '/';
    obj_api& api = app.runtime.instance_create_depth<obj_api>(0, 0, 0);
    api.initialize(url, app.api_env.api_username.value_or(""),
                   app.api_env.api_password.value_or(""));
    app.api = api.id();
}

obj_api& api_client(AppState& app) {
    if (obj_api* api = app.runtime.find_as<obj_api>(app.api))
        return *api;
    create_api_client(app);
    return *app.runtime.find_as<obj_api>(app.api);
}

bool is_remote_defined(const AppState& app) {
    return app.api_env.remote_url && !app.api_env.remote_url->empty();
}

std::string no_server_configured_text() {
    return "No research server is configured. Put its address (remote_url), api_username and "
           "api_password in the file \".api_env.json\" in the working directory; see "
           "docs/server.md, \"Connecting the game\".";
}

Promise<bool> connect_to_server(AppState& app) {
    if (!is_remote_defined(app))
        return promise_resolve(false);
    if (obj_loading_status* status = loading_status(app))
        status->set("Connecting...");
    return api_client(app).test_connection().and_then([&app](bool connected) {
        if (obj_loading_status* status = loading_status(app))
            status->clear();
        log(connected ? "Connected to the research server at " + api_client(app).base_url + "."
                      : "The research server at " + api_client(app).base_url +
                            " did not answer as expected.");
        return connected;
    });
}

}  // namespace veldra
