#include "net/http_response.h"

#include "serial/json.h"

namespace veldra {

std::optional<Value> HttpResponse::json() const {
    return json_parse(result);
}

HttpResponse http_response_from_event(const HttpAsyncEvent& event) {
    HttpResponse response;
    response.status = event.http_status;
    response.url = event.url;
    response.headers = event.response_headers;
    response.result = event.result;
    response.engine_status = event.status;
    response.error = event.error;
    return response;
}

}  // namespace veldra
