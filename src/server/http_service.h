#pragma once
// The study server on the network: cpp-httplib's server (HTTPS when given a certificate) in
// front of answer_api_request and, when it has a password, the researcher's page, with the
// body-size limit, the per-address rate limit and one log line per request. The only file that
// knows the HTTP library.

#include <memory>
#include <optional>

#include "server/admin_routes.h"
#include "server/basic_auth.h"
#include "server/rate_limiter.h"
#include "server/server_options.h"
#include "server/trial_store.h"

namespace httplib {
class Server;
}

namespace veldra {

class StudyHttpService {
public:
    // Without `admin`, /admin/ is an API path like any other (so 401, or 404 with the API's
    // credentials). Throws std::runtime_error when the certificate or key cannot be used.
    StudyHttpService(TrialStore& store, BasicCredentials credentials,
                     std::optional<AdminSettings> admin, const ServerOptions& options);
    ~StudyHttpService();
    StudyHttpService(const StudyHttpService&) = delete;
    StudyHttpService& operator=(const StudyHttpService&) = delete;

    // Binds options.address and options.port; gives the port bound (the chosen one for port 0).
    // Throws std::runtime_error when the address cannot be bound.
    int bind();
    // Answers requests until stop(); false when listening failed.
    bool run();
    // From any thread: run() returns once the requests in progress are answered. False (and
    // nothing done) before run() listens; call it once it has returned true, since the library
    // does not take a second stop while the first is under way.
    bool stop();

    bool is_https() const { return https_; }

private:
    void install_handlers();

    TrialStore& store_;
    BasicCredentials credentials_;
    const std::optional<AdminSettings> admin_;
    const ServerOptions options_;
    RateLimiter limiter_;
    bool https_ = false;
    std::unique_ptr<httplib::Server> server_;
};

}  // namespace veldra
