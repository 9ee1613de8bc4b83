#pragma once
// What a request made through obj_http settles with: every request's promise is fulfilled with
// one of these, for HTTP errors and network failures too, and the caller decides with is_ok().

#include <optional>
#include <string>

#include "runtime/http.h"
#include "runtime/value.h"

namespace veldra {

struct HttpResponse {
    int status = 0;  // the HTTP status; 0 when no answer came
    std::string url;
    HttpHeaders headers;
    std::string result;      // the body
    int engine_status = -1;  // the transport's: HTTP_COMPLETED, or negative without an answer
    std::string error;       // why no answer came

    bool is_ok() const { return status >= 200 && status < 300; }
    const std::string& text() const { return result; }
    // nullopt when the body is not JSON.
    std::optional<Value> json() const;
};

// The transport's status of a request that got an answer, whatever its HTTP status.
inline constexpr int HTTP_COMPLETED = 0;

HttpResponse http_response_from_event(const HttpAsyncEvent& event);

}  // namespace veldra
