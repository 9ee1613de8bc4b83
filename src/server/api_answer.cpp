#include "server/api_answer.h"

#include <nlohmann/json.hpp>

namespace veldra {

ApiAnswer json_answer(int status, const std::string& json_text) {
    return ApiAnswer{
        .status = status, .content_type = "application/json", .body = json_text, .headers = {}};
}

ApiAnswer error_answer(int status, const std::string& message) {
    const nlohmann::json body = {{"error", message}};
    return json_answer(status, body.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

ApiAnswer text_answer(int status, const std::string& text) {
    return ApiAnswer{.status = status, .content_type = "text/plain", .body = text, .headers = {}};
}

}  // namespace veldra
