#pragma once
// A request to the study server and its answer, as plain data: the endpoints are functions from
// one to the other, tested without sockets; http_service.cpp is the only place that knows the
// HTTP library.

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace veldra {

struct ApiRequest {
    std::string method;                 // "GET", "POST", ...
    std::string path;                   // decoded, without the query
    std::optional<std::string> fields;  // the query's "fields" parameter, when given
    std::string authorization;          // the Authorization header, "" when absent
    std::string body;
};

struct ApiAnswer {
    int status = 200;
    std::string content_type;
    std::string body;
    std::vector<std::pair<std::string, std::string>> headers;  // beyond Content-Type
};

// application/json answers; errors are {"error": "..."} so that a person reading a log or a
// client's warning sees why.
ApiAnswer json_answer(int status, const std::string& json_text);
ApiAnswer error_answer(int status, const std::string& message);
ApiAnswer text_answer(int status, const std::string& text);

}  // namespace veldra
