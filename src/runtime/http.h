#pragma once
// HTTP transport. A request is started at once and answered later: the frame loop polls the
// backend once per frame and raises each finished request as the async HTTP event of every
// instance, on the game thread. There is one thread; the backend may use the network's own
// asynchrony but never calls game code.

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace veldra {

using HttpRequestId = std::int64_t;
using HttpHeaders = std::vector<std::pair<std::string, std::string>>;

struct HttpRequest {
    std::string method = "GET";
    std::string url;
    HttpHeaders headers;
    std::string body;
};

// One finished request. `status` is 0 when a response arrived (whatever its HTTP status) and
// negative when none did (no connection, time-out), with `error` saying why.
struct HttpAsyncEvent {
    HttpRequestId id = -1;
    int status = 0;
    int http_status = 0;
    std::string url;
    HttpHeaders response_headers;
    std::string result;  // the body
    std::string error;
};

class Http {
public:
    virtual ~Http() = default;
    // Starts a request; its answer comes from a later poll() with the id returned here.
    virtual HttpRequestId request(HttpRequest request) = 0;
    // The requests finished since the last call, in the order they finished.
    virtual std::vector<HttpAsyncEvent> poll() = 0;
};

// No network: every request fails, answered in the frame after the one that made it, as a real
// transport would be, so code that waits for an answer behaves the same with and without one.
class OfflineHttp final : public Http {
public:
    HttpRequestId request(HttpRequest request) override;
    std::vector<HttpAsyncEvent> poll() override;

private:
    HttpRequestId next_id_ = 1;
    std::vector<HttpAsyncEvent> finished_;  // made since the last poll
    std::vector<HttpAsyncEvent> due_;       // answered by the next poll
};

}  // namespace veldra
