#pragma once
// The network transport of a real run: HTTP(S) on libcurl's multi interface, driven from the
// frame loop's poll on the game's one thread. No thread of its own: each poll lets libcurl move
// every transfer as far as it can without blocking, then hands over the finished ones.

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "runtime/http.h"

namespace veldra::platform {

struct CurlHttpOptions {
    // PEM file of the certificate authorities to trust instead of the system's (a study
    // server with a self-signed certificate); none: the system's store.
    std::optional<std::string> ca_file;
    long connect_timeout_ms = 10'000;
    long total_timeout_ms = 30'000;
    // A larger answer is cut off and the request fails: no server of ours sends one, and a
    // wrong address must not fill the memory.
    std::size_t max_response_bytes = 16 * 1024 * 1024;
    // How long a poll may wait for the network while requests are in flight. A headless run
    // has no frame rate to keep and would otherwise spin through thousands of empty frames
    // per answer; a window keeps 0.
    int poll_wait_ms = 0;
};

class CurlHttp final : public Http {
public:
    explicit CurlHttp(CurlHttpOptions options = {});
    ~CurlHttp() override;
    CurlHttp(const CurlHttp&) = delete;
    CurlHttp& operator=(const CurlHttp&) = delete;

    HttpRequestId request(HttpRequest request) override;
    std::vector<HttpAsyncEvent> poll() override;

    struct Transfer;

private:
    CurlHttpOptions options_;
    void* multi_ = nullptr;  // CURLM*, kept out of this header so no caller sees libcurl
    HttpRequestId next_id_ = 1;
    std::map<HttpRequestId, std::unique_ptr<Transfer>> transfers_;
    std::vector<HttpAsyncEvent> refused_;  // requests that could not even start
};

}  // namespace veldra::platform
