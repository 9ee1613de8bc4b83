// The libcurl transport against a socket of the test's own on 127.0.0.1: what it sends, what it
// makes of an answer, and that every request ends, also when the answer is too large, never
// comes or cannot come. One thread: the test accepts and answers between polls, as the game's
// frame loop would poll.
#include "platform/curl_http.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>

namespace veldra::platform {
namespace {

// A listening socket on a free port of 127.0.0.1 that accepts without blocking.
class LocalListener {
public:
    LocalListener() {
        fd_ = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof(address);
        if (bind(fd_, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(fd_, 4) != 0 ||
            getsockname(fd_, reinterpret_cast<sockaddr*>(&address), &size) != 0)
            return;
        fcntl(fd_, F_SETFL, O_NONBLOCK);
        port_ = ntohs(address.sin_port);
    }
    ~LocalListener() {
        if (client_ >= 0)
            close(client_);
        close(fd_);
    }
    std::string url(const std::string& path) const {
        return "http://127.0.0.1:" + std::to_string(port_) + path;
    }
    int port() const { return port_; }
    // Accepts the client once it has connected and reads what it sent so far.
    void serve_step() {
        if (client_ < 0) {
            client_ = accept(fd_, nullptr, nullptr);
            if (client_ >= 0)
                fcntl(client_, F_SETFL, O_NONBLOCK);
        }
        char buffer[4096];
        ssize_t got = 0;
        while (client_ >= 0 && (got = read(client_, buffer, sizeof buffer)) > 0)
            received.append(buffer, static_cast<std::size_t>(got));
    }
    bool answer(const std::string& text) {
        return client_ >= 0 &&
               write(client_, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    }

    std::string received;

private:
    int fd_ = -1;
    int client_ = -1;
    int port_ = 0;
};

CurlHttpOptions quick_options() {
    CurlHttpOptions options;
    options.connect_timeout_ms = 2'000;
    options.total_timeout_ms = 5'000;
    options.poll_wait_ms = 5;
    return options;
}

// Polls until the request has ended, answering with `answer` once the whole request has
// arrived (it ends with `request_end`). Bounded: a transport that never ends a request fails
// the test instead of hanging it.
std::optional<HttpAsyncEvent> run(CurlHttp& http, LocalListener* server,
                                  const std::string& answer = "",
                                  const std::string& request_end = "\r\n\r\n") {
    bool answered = answer.empty();
    for (int i = 0; i < 20'000; ++i) {
        if (server) {
            server->serve_step();
            if (!answered && server->received.find(request_end) != std::string::npos)
                answered = server->answer(answer);
        }
        for (HttpAsyncEvent& event : http.poll())
            return event;
    }
    return std::nullopt;
}

TEST(CurlHttpTest, SendsTheRequestAndReadsTheAnswer) {
    LocalListener server;
    ASSERT_GT(server.port(), 0);
    CurlHttp http(quick_options());
    HttpRequest request;
    request.method = "POST";
    request.url = server.url("/api/game/trials");
    request.headers = {{"Authorization", "Basic Z2FtZTpzM2NyZXQ="},
                       {"Content-Type", "application/json"}};
    request.body = R"({"seed":3})";
    const HttpRequestId id = http.request(request);
    const auto event =
        run(http, &server,
            "HTTP/1.1 201 Created\r\nContent-Type: application/json\r\nX-Study:  pilot \r\n"
            "Content-Length: 19\r\nConnection: close\r\n\r\n{\"status\":\"stored\"}",
            R"({"seed":3})");
    ASSERT_TRUE(event);
    EXPECT_EQ(event->id, id);
    EXPECT_EQ(event->status, 0) << event->error;
    EXPECT_EQ(event->http_status, 201);
    EXPECT_EQ(event->url, request.url);
    EXPECT_EQ(event->result, R"({"status":"stored"})");
    const HttpHeaders& headers = event->response_headers;
    EXPECT_NE(std::find(headers.begin(), headers.end(),
                        std::pair<std::string, std::string>{"X-Study", "pilot"}),
              headers.end());
    EXPECT_EQ(server.received.rfind("POST /api/game/trials HTTP/1.1\r\n", 0), 0u)
        << server.received;
    EXPECT_NE(server.received.find("\r\nAuthorization: Basic Z2FtZTpzM2NyZXQ=\r\n"),
              std::string::npos);
    EXPECT_NE(server.received.find("\r\nContent-Type: application/json\r\n"), std::string::npos);
}

TEST(CurlHttpTest, AnAnswerWithAnErrorStatusIsStillAnAnswer) {
    LocalListener server;
    CurlHttp http(quick_options());
    http.request({.method = "GET", .url = server.url("/"), .headers = {}, .body = ""});
    const auto event = run(http, &server,
                           "HTTP/1.1 401 Unauthorized\r\nContent-Length: 2\r\n"
                           "Connection: close\r\n\r\nno");
    ASSERT_TRUE(event);
    EXPECT_EQ(event->status, 0);
    EXPECT_EQ(event->http_status, 401);
    EXPECT_EQ(event->result, "no");
}

TEST(CurlHttpTest, AnAnswerLargerThanTheBoundEndsTheRequestAsAFailure) {
    LocalListener server;
    CurlHttpOptions options = quick_options();
    options.max_response_bytes = 50;
    CurlHttp http(options);
    http.request({.method = "GET", .url = server.url("/"), .headers = {}, .body = ""});
    const auto event = run(http, &server,
                           "HTTP/1.1 200 OK\r\nContent-Length: 100\r\nConnection: close\r\n\r\n" +
                               std::string(100, 'x'));
    ASSERT_TRUE(event);
    EXPECT_LT(event->status, 0);
    EXPECT_EQ(event->error, "the answer is larger than 50 bytes");
    EXPECT_TRUE(event->result.empty());
}

TEST(CurlHttpTest, EveryRequestEndsWhenNoAnswerComesOrNoneCan) {
    CurlHttpOptions options = quick_options();
    options.total_timeout_ms = 300;
    CurlHttp http(options);

    LocalListener silent;  // accepts, reads, never answers
    http.request({.method = "GET", .url = silent.url("/"), .headers = {}, .body = ""});
    const auto unanswered = run(http, &silent);
    ASSERT_TRUE(unanswered);
    EXPECT_LT(unanswered->status, 0);
    EXPECT_FALSE(unanswered->error.empty());

    int closed_port = 0;
    {
        LocalListener gone;
        closed_port = gone.port();
    }
    http.request({.method = "GET",
                  .url = "http://127.0.0.1:" + std::to_string(closed_port) + "/",
                  .headers = {},
                  .body = ""});
    const auto refused = run(http, nullptr);
    ASSERT_TRUE(refused);
    EXPECT_LT(refused->status, 0);

    // Only http and https: a file address never reads the disk.
    http.request({.method = "GET", .url = "file:///etc/passwd", .headers = {}, .body = ""});
    const auto other_protocol = run(http, nullptr);
    ASSERT_TRUE(other_protocol);
    EXPECT_LT(other_protocol->status, 0);
    EXPECT_TRUE(other_protocol->result.empty());
}

}  // namespace
}  // namespace veldra::platform
