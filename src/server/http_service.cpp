#include "server/http_service.h"

#include <ctime>
#include <stdexcept>

#include <httplib.h>

#include "server/api_routes.h"
#include "server/request_log.h"

namespace veldra {

namespace {

ApiRequest api_request_of(const httplib::Request& request) {
    return ApiRequest{
        .method = request.method,
        .path = request.path,
        .fields = request.has_param("fields")
                      ? std::optional<std::string>(request.get_param_value("fields"))
                      : std::nullopt,
        .authorization = request.get_header_value("Authorization"),
        .body = request.body,
    };
}

AdminRequest admin_request_of(const httplib::Request& request) {
    // For a posted form the library has put the form's fields among the parameters.
    return AdminRequest{
        .method = request.method,
        .path = request.path,
        .authorization = request.get_header_value("Authorization"),
        .origin = request.get_header_value("Origin"),
        .host = request.get_header_value("Host"),
        .user = request.get_param_value("user"),
        .token = request.get_param_value("token"),
    };
}

void send(const ApiAnswer& answer, httplib::Response& response) {
    response.status = answer.status;
    for (const auto& [name, value] : answer.headers)
        response.set_header(name, value);
    response.set_content(answer.body, answer.content_type);
}

std::unique_ptr<httplib::Server> make_server(const ServerOptions& options) {
    if (options.cert_file.empty())
        return std::make_unique<httplib::Server>();
#ifdef CPPHTTPLIB_OPENSSL_SUPPORT
    auto server =
        std::make_unique<httplib::SSLServer>(options.cert_file.c_str(), options.key_file.c_str());
    if (!server->is_valid())
        throw std::runtime_error("cannot use the certificate \"" + options.cert_file +
                                 "\" with the key \"" + options.key_file + "\"");
    return server;
#else
    throw std::runtime_error("this build has no HTTPS: cert= cannot be used");
#endif
}

}  // namespace

StudyHttpService::StudyHttpService(TrialStore& store, BasicCredentials credentials,
                                   std::optional<AdminSettings> admin, const ServerOptions& options)
    : store_(store),
      credentials_(std::move(credentials)),
      admin_(std::move(admin)),
      options_(options),
      limiter_(options.rate_limit, 2 * options.rate_limit),
      https_(!options.cert_file.empty()),
      server_(make_server(options)) {
    install_handlers();
}

StudyHttpService::~StudyHttpService() = default;

void StudyHttpService::install_handlers() {
    server_->set_payload_max_length(options_.max_body);
    // Before the body is read, so that a client over its rate costs no more than its headers.
    server_->set_pre_routing_handler(
        [this](const httplib::Request& request, httplib::Response& response) {
            if (limiter_.allow(request.remote_addr, RateLimiter::Clock::now()))
                return httplib::Server::HandlerResponse::Unhandled;
            ApiAnswer answer = error_answer(429, "too many requests: slow down");
            answer.headers.emplace_back("Retry-After", "1");
            send(answer, response);
            return httplib::Server::HandlerResponse::Handled;
        });
    // Every method reaches the same routing, which answers 404 and 405 itself.
    const auto handle = [this](const httplib::Request& request, httplib::Response& response) {
        try {
            if (admin_ && is_admin_path(request.path))
                send(answer_admin_request(admin_request_of(request), store_, *admin_), response);
            else
                send(answer_api_request(api_request_of(request), store_, credentials_), response);
        } catch (const std::exception& error) {
            write_log_line(
                timestamped_log_line(std::time(nullptr), std::string("error: ") + error.what()));
            send(error_answer(500, "the server could not read or write its database"), response);
        }
    };
    server_->Get(".*", handle);
    server_->Post(".*", handle);
    server_->Put(".*", handle);
    server_->Patch(".*", handle);
    server_->Delete(".*", handle);
    server_->Options(".*", handle);
    server_->set_logger([](const httplib::Request& request, const httplib::Response& response) {
        write_log_line(request_log_line(std::time(nullptr), request.method, request.path,
                                        response.status, request.body.size(),
                                        response.body.size()));
    });
}

int StudyHttpService::bind() {
    const int port =
        options_.port == 0
            ? server_->bind_to_any_port(options_.address)
            : (server_->bind_to_port(options_.address, options_.port) ? options_.port : -1);
    if (port < 0)
        throw std::runtime_error("cannot listen on " + options_.address + " port " +
                                 std::to_string(options_.port));
    return port;
}

bool StudyHttpService::run() {
    return server_->listen_after_bind();
}

bool StudyHttpService::stop() {
    if (!server_->is_running())
        return false;
    server_->stop();
    return true;
}

}  // namespace veldra
