#include "runtime/http.h"

namespace veldra {

HttpRequestId OfflineHttp::request(HttpRequest request) {
    HttpAsyncEvent response;
    response.id = next_id_++;
    response.status = -1;
    response.url = std::move(request.url);
    response.error = "this run has no network connection";
    finished_.push_back(std::move(response));
    return finished_.back().id;
}

std::vector<HttpAsyncEvent> OfflineHttp::poll() {
    // A request made in a frame's step is answered in a later frame, never in its own.
    return std::exchange(due_, std::exchange(finished_, {}));
}

}  // namespace veldra
