#include "platform/curl_http.h"

#include <curl/curl.h>

#include <utility>

namespace veldra::platform {

struct CurlHttp::Transfer {
    HttpRequestId id = -1;
    CURL* easy = nullptr;
    curl_slist* headers = nullptr;
    std::string url;
    std::string body;  // libcurl reads the request body from here while it sends
    std::string answer;
    HttpHeaders answer_headers;
    std::size_t max_answer_bytes = 0;
    bool answer_too_large = false;
    char error[CURL_ERROR_SIZE] = {};

    ~Transfer() {
        if (easy)
            curl_easy_cleanup(easy);
        curl_slist_free_all(headers);
    }
};

namespace {

CURLM* as_multi(void* multi) {
    return static_cast<CURLM*>(multi);
}

std::size_t on_answer_bytes(char* data, std::size_t size, std::size_t count, void* user) {
    auto& transfer = *static_cast<CurlHttp::Transfer*>(user);
    const std::size_t bytes = size * count;
    if (transfer.answer.size() + bytes > transfer.max_answer_bytes) {
        transfer.answer_too_large = true;
        return 0;  // libcurl ends the transfer with a write error
    }
    transfer.answer.append(data, bytes);
    return bytes;
}

std::string trimmed(std::string text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    const auto last = text.find_last_not_of(" \t\r\n");
    return first == std::string::npos ? std::string() : text.substr(first, last - first + 1);
}

// Header lines arrive one per call. A redirect or a "100 Continue" starts a new status line:
// only the headers of the final answer are kept.
std::size_t on_header_line(char* data, std::size_t size, std::size_t count, void* user) {
    auto& transfer = *static_cast<CurlHttp::Transfer*>(user);
    const std::string line(data, size * count);
    if (line.rfind("HTTP/", 0) == 0) {
        transfer.answer_headers.clear();
        return line.size();
    }
    const auto colon = line.find(':');
    if (colon != std::string::npos)
        transfer.answer_headers.emplace_back(trimmed(line.substr(0, colon)),
                                             trimmed(line.substr(colon + 1)));
    return line.size();
}

HttpAsyncEvent refused_event(HttpRequestId id, std::string url, std::string why) {
    HttpAsyncEvent event;
    event.id = id;
    event.status = -1;
    event.url = std::move(url);
    event.error = std::move(why);
    return event;
}

void set_method(CURL* easy, const std::string& method, const std::string& body) {
    if (method == "GET" && body.empty()) {
        curl_easy_setopt(easy, CURLOPT_HTTPGET, 1L);
        return;
    }
    if (method == "HEAD") {
        curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
        return;
    }
    curl_easy_setopt(easy, CURLOPT_POSTFIELDS, body.c_str());
    curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    if (method != "POST")
        curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, method.c_str());
}

}  // namespace

CurlHttp::CurlHttp(CurlHttpOptions options) : options_(std::move(options)) {
    // The game has one thread, so the process-wide set-up cannot race anything.
    static const bool initialized = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    if (initialized)
        multi_ = curl_multi_init();
}

CurlHttp::~CurlHttp() {
    for (auto& [id, transfer] : transfers_)
        curl_multi_remove_handle(as_multi(multi_), transfer->easy);
    transfers_.clear();
    if (multi_)
        curl_multi_cleanup(as_multi(multi_));
}

HttpRequestId CurlHttp::request(HttpRequest request) {
    const HttpRequestId id = next_id_++;
    auto transfer = std::make_unique<Transfer>();
    transfer->id = id;
    transfer->url = std::move(request.url);
    transfer->body = std::move(request.body);
    transfer->max_answer_bytes = options_.max_response_bytes;
    transfer->easy = multi_ ? curl_easy_init() : nullptr;
    if (!transfer->easy) {
        refused_.push_back(refused_event(id, transfer->url, "the HTTP library did not start"));
        return id;
    }
    CURL* easy = transfer->easy;
    curl_easy_setopt(easy, CURLOPT_URL, transfer->url.c_str());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, options_.connect_timeout_ms);
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, options_.total_timeout_ms);
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, 2L);
    if (options_.ca_file)
        curl_easy_setopt(easy, CURLOPT_CAINFO, options_.ca_file->c_str());
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, transfer->error);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, on_answer_bytes);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, transfer.get());
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, on_header_line);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, transfer.get());
    curl_easy_setopt(easy, CURLOPT_PRIVATE, transfer.get());
    set_method(easy, request.method, transfer->body);
    for (const auto& [name, value] : request.headers)
        transfer->headers = curl_slist_append(transfer->headers, (name + ": " + value).c_str());
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, transfer->headers);
    if (curl_multi_add_handle(as_multi(multi_), easy) != CURLM_OK) {
        refused_.push_back(refused_event(id, transfer->url, "the request could not be started"));
        return id;
    }
    transfers_.emplace(id, std::move(transfer));
    return id;
}

std::vector<HttpAsyncEvent> CurlHttp::poll() {
    std::vector<HttpAsyncEvent> events = std::exchange(refused_, {});
    if (!multi_ || transfers_.empty())
        return events;
    int running = 0;
    if (options_.poll_wait_ms > 0)
        curl_multi_poll(as_multi(multi_), nullptr, 0, options_.poll_wait_ms, nullptr);
    curl_multi_perform(as_multi(multi_), &running);
    int left = 0;
    while (CURLMsg* message = curl_multi_info_read(as_multi(multi_), &left)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        Transfer* done = nullptr;
        curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &done);
        const CURLcode code = message->data.result;
        HttpAsyncEvent event;
        event.id = done->id;
        event.url = done->url;
        long http_status = 0;
        curl_easy_getinfo(done->easy, CURLINFO_RESPONSE_CODE, &http_status);
        event.http_status = static_cast<int>(http_status);
        if (code == CURLE_OK) {
            event.status = 0;
            event.result = std::move(done->answer);
            event.response_headers = std::move(done->answer_headers);
        } else {
            event.status = -1;
            event.error = done->answer_too_large
                              ? "the answer is larger than " +
                                    std::to_string(options_.max_response_bytes) + " bytes"
                          : done->error[0] ? std::string(done->error)
                                           : std::string(curl_easy_strerror(code));
        }
        curl_multi_remove_handle(as_multi(multi_), done->easy);
        transfers_.erase(done->id);
        events.push_back(std::move(event));
    }
    return events;
}

}  // namespace veldra::platform
