#pragma once
// A runtime whose transport is a ScriptedHttp, for the tests of the HTTP wrapper and the API
// client: requests are written down, and the test raises their answers as the frame loop would.

#include <gtest/gtest.h>

#include <memory>

#include "runtime/gc.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "support/scripted_http.h"

namespace veldra::testing {

class HttpFixture : public ::testing::Test {
protected:
    HttpFixture() {
        auto scripted = std::make_unique<ScriptedHttp>();
        http = scripted.get();
        services.http = std::move(scripted);
        runtime.start(runtime.room_add({"room", nullptr}));
    }
    // Raises the answer to the last request made.
    void answer_last(int http_status, std::string body) {
        runtime.raise_async_http(http->answer(http->ids.back(), http_status, std::move(body)));
    }
    const HttpRequest& last_request() const { return http->requests.back(); }

    GcScope collector;
    Services services;
    Runtime runtime{services};
    ScriptedHttp* http = nullptr;
};

}  // namespace veldra::testing
