#pragma once
// The research server's API, one method per endpoint, each a promise. Failures never reject:
// a request that went wrong fulfils with false or nullopt (with the warning "HTTP error: " and
// the status logged), so a caller has one place to decide what the participant sees.

#include <optional>
#include <string>
#include <vector>

#include "async/promise.h"
#include "net/obj_http.h"
#include "runtime/instance.h"
#include "runtime/instance_id.h"
#include "runtime/object_type.h"
#include "runtime/value.h"

namespace veldra {

class obj_api : public Instance {
    VELDRA_OBJECT(obj_api, Instance)
public:
    void on_create() override;
    void on_clean_up() override;

    // `base_url` ends with "/"; the API lives under base_url + "api/game".
    void initialize(const std::string& base_url, const std::string& username,
                    const std::string& password);

    // True when the server's root answered with a 2xx status.
    Promise<bool> test_connection();
    // `trial_data` is the record in its JSON form (trial_data_to_value). True once stored.
    Promise<bool> trial_submit(const Value& trial_data);
    // The level files the user has records of.
    Promise<std::optional<std::vector<std::string>>> user_get_submitted_levels(
        const std::string& user_id);
    // The user's records; with `fields`, each holds only those top-level fields.
    Promise<std::optional<Value>> user_get_submitted_trials(
        const std::string& user_id, const std::optional<std::vector<std::string>>& fields = {});
    Promise<std::optional<double>> user_get_total_score(const std::string& user_id);
    Promise<std::optional<bool>> user_exists(const std::string& user_id);

    std::string base_url;
    std::string api_base_url;
    InstanceId http = NO_INSTANCE;  // its own obj_http
    HttpHeaders headers;            // sent with every request: the basic authentication

private:
    obj_http& http_instance();
    Promise<HttpResponse> get(const std::string& url);
};

}  // namespace veldra
