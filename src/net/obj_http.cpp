#include "net/obj_http.h"

#include <strings.h>

#include <utility>

#include "runtime/runtime.h"
#include "runtime/services.h"
#include "serial/json.h"

namespace veldra {

void obj_http::on_create() {
    persistent = true;
}

Promise<HttpResponse> obj_http::get(const std::string& url, const HttpHeaders& headers) {
    return request(url, "GET", headers, "");
}

Promise<HttpResponse> obj_http::post_string(const std::string& url, const std::string& body,
                                            const HttpHeaders& headers) {
    return request(url, "POST", headers_with(headers, "Content-Type", "text/plain"), body);
}

Promise<HttpResponse> obj_http::post_json(const std::string& url, const Value& body,
                                          const HttpHeaders& headers) {
    return request(url, "POST", headers_with(headers, "Content-Type", "application/json"),
                   json_stringify(body, false));
}

Promise<HttpResponse> obj_http::request(const std::string& url, const std::string& method,
                                        const HttpHeaders& headers, const std::string& body) {
    HttpRequest request;
    request.method = method;
    request.url = url;
    request.headers = headers;
    request.body = body;
    // Sent and registered in one go, so an answer always finds its resolver, even when promise
    // executors are delayed to the event loop.
    return Promise<HttpResponse>(
        [this, request = std::move(request)](const Resolve<HttpResponse>& resolve, const Reject&) {
            const HttpRequestId id = runtime().services().http->request(request);
            _req_callbacks.insert_or_assign(id, resolve);
        });
}

void obj_http::on_async_http(const HttpAsyncEvent& event) {
    const auto entry = _req_callbacks.find(event.id);
    if (entry == _req_callbacks.end())
        return;
    const Resolve<HttpResponse> resolve = entry->second;
    _req_callbacks.erase(entry);
    resolve(http_response_from_event(event));
}

void obj_http::on_clean_up() {
    _req_callbacks.clear();
}

obj_http& http_create(Runtime& runtime) {
    return runtime.instance_create_depth<obj_http>(0, 0, 0);
}

HttpHeaders headers_with(HttpHeaders headers, const std::string& name, const std::string& value) {
    std::erase_if(headers, [&name](const auto& header) {
        return strcasecmp(header.first.c_str(), name.c_str()) == 0;
    });
    headers.emplace_back(name, value);
    return headers;
}

}  // namespace veldra
