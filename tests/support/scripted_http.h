#pragma once
// An HTTP transport for tests: it writes down every request and answers none by itself. A test
// answers with answer(), as the transport's event for a request, and raises it itself.

#include <string>
#include <vector>

#include "runtime/http.h"

namespace veldra::testing {

class ScriptedHttp final : public Http {
public:
    HttpRequestId request(HttpRequest request) override {
        requests.push_back(std::move(request));
        ids.push_back(next_id_);
        return next_id_++;
    }
    std::vector<HttpAsyncEvent> poll() override { return {}; }

    // The event of an answer with `http_status` and `body` to the request with `id`.
    HttpAsyncEvent answer(HttpRequestId id, int http_status, std::string body) const {
        HttpAsyncEvent event;
        event.id = id;
        event.status = 0;
        event.http_status = http_status;
        for (std::size_t i = 0; i < ids.size(); ++i)
            if (ids[i] == id)
                event.url = requests[i].url;
        event.result = std::move(body);
        return event;
    }
    // The event of a request that got no answer at all.
    HttpAsyncEvent no_answer(HttpRequestId id) const {
        HttpAsyncEvent event = answer(id, 0, "");
        event.status = -1;
        event.error = "Connection refused";
        return event;
    }

    std::vector<HttpRequest> requests;
    std::vector<HttpRequestId> ids;

private:
    HttpRequestId next_id_ = 41;  // not 1: an id that happens to match is not mistaken for right
};

}  // namespace veldra::testing
