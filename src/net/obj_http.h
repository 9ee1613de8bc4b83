#pragma once
// Turns the transport's requests, answered later by the async HTTP event, into promises. Each
// obj_http keeps the resolvers of its own requests by request id; the event reaches every
// instance, so an answer to someone else's request is left alone. A request that never gets an
// answer leaves its promise pending: the transport's time-outs make sure every request gets one.

#include <map>
#include <string>

#include "async/promise.h"
#include "net/http_response.h"
#include "runtime/instance.h"
#include "runtime/object_type.h"
#include "runtime/value.h"

namespace veldra {

class Runtime;

class obj_http : public Instance {
    VELDRA_OBJECT(obj_http, Instance)
public:
    void on_create() override;
    void on_async_http(const HttpAsyncEvent& event) override;
    void on_clean_up() override;

    Promise<HttpResponse> get(const std::string& url, const HttpHeaders& headers = {});
    // Sent as "text/plain".
    Promise<HttpResponse> post_string(const std::string& url, const std::string& body,
                                      const HttpHeaders& headers = {});
    // `body` written as JSON, sent as "application/json".
    Promise<HttpResponse> post_json(const std::string& url, const Value& body,
                                    const HttpHeaders& headers = {});
    Promise<HttpResponse> request(const std::string& url, const std::string& method,
                                  const HttpHeaders& headers, const std::string& body);

    std::size_t pending_requests() const { return _req_callbacks.size(); }

private:
    std::map<HttpRequestId, Resolve<HttpResponse>> _req_callbacks;
};

// A new obj_http, persistent so that its requests outlive room changes.
obj_http& http_create(Runtime& runtime);

// `headers` with `name` set to `value`, replacing a header of that name in any case.
HttpHeaders headers_with(HttpHeaders headers, const std::string& name, const std::string& value);

}  // namespace veldra
