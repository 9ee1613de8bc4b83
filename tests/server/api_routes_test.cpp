#include "server/api_routes.h"

#include <gtest/gtest.h>

#include "server/trial_record_sample.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

using veldra::testing::record_json;
using veldra::testing::sample_trial_data;
using veldra::testing::ScratchDirectory;

constexpr const char* GOOD_AUTH = "Basic bGFiOnNlY3JldA==";  // lab:secret

class ApiRoutesTest : public ::testing::Test {
protected:
    ScratchDirectory scratch{"api_routes"};
    TrialStore store{(scratch.path() / "study.sqlite").string(), SqliteOpen::create};
    const BasicCredentials credentials{.username = "lab", .password = "secret"};

    void SetUp() override { store.register_users({"p1"}); }

    ApiAnswer answer(const std::string& method, const std::string& path,
                     const std::string& authorization = GOOD_AUTH, const std::string& body = "") {
        return answer_api_request(ApiRequest{.method = method,
                                             .path = path,
                                             .fields = std::nullopt,
                                             .authorization = authorization,
                                             .body = body},
                                  store, credentials);
    }
    static std::string header(const ApiAnswer& answer, const std::string& name) {
        for (const auto& [key, value] : answer.headers)
            if (key == name)
                return value;
        return {};
    }
};

TEST_F(ApiRoutesTest, EveryEndpointIsReachedAtTheClientsPath) {
    EXPECT_EQ(answer("GET", "/").body, "ok");
    EXPECT_EQ(answer("POST", "/api/game/trials", GOOD_AUTH,
                     record_json(sample_trial_data("p1", "a.txt", 1, 2)))
                  .status,
              201);
    EXPECT_EQ(answer("GET", "/api/game/levelsPerUser/p1").body, R"(["a.txt"])");
    EXPECT_EQ(answer("GET", "/api/game/trialsPerUser/p1").status, 200);
    EXPECT_EQ(answer("GET", "/api/game/totalScorePerUser/p1").body, R"({"total_score":2.0})");
    EXPECT_EQ(answer("GET", "/api/game/userExists/p1").body, "1");
    EXPECT_EQ(answer("HEAD", "/api/game/userExists/p1").status, 200);
}

TEST_F(ApiRoutesTest, WrongOrMissingCredentialsGet401WithAChallengeAndTouchNothing) {
    const std::string body = record_json(sample_trial_data("p1", "a.txt", 1, 2));
    for (const std::string& authorization :
         {std::string(), std::string("Basic bGFiOndyb25n"),  // lab:wrong
          std::string("Basic bGFiOnNlY3JldDp4"),             // lab:secret:x
          std::string("Bearer bGFiOnNlY3JldA=="), std::string("Basic not-base64!"),
          std::string("Basic")}) {
        SCOPED_TRACE(authorization);
        const ApiAnswer refused = answer("POST", "/api/game/trials", authorization, body);
        EXPECT_EQ(refused.status, 401);
        EXPECT_EQ(header(refused, "WWW-Authenticate").rfind("Basic realm=", 0), 0u);
        // Not even whether a path exists is told without the password.
        EXPECT_EQ(answer("GET", "/no/such/path", authorization).status, 401);
    }
    EXPECT_TRUE(store.records_of_user("p1").empty());
    EXPECT_EQ(answer("GET", "/", "basic bGFiOnNlY3JldA==").status, 200);  // scheme in any case
}

TEST_F(ApiRoutesTest, WrongMethodsGet405WithTheAllowedOne) {
    const ApiAnswer get_trials = answer("GET", "/api/game/trials");
    EXPECT_EQ(get_trials.status, 405);
    EXPECT_EQ(header(get_trials, "Allow"), "POST");
    const ApiAnswer post_exists = answer("POST", "/api/game/userExists/p1");
    EXPECT_EQ(post_exists.status, 405);
    EXPECT_EQ(header(post_exists, "Allow"), "GET, HEAD");
    EXPECT_EQ(answer("DELETE", "/api/game/trialsPerUser/p1").status, 405);
    EXPECT_EQ(answer("PUT", "/").status, 405);
}

TEST_F(ApiRoutesTest, PathsThatAreNoEndpointGet404) {
    EXPECT_EQ(answer("GET", "/api/game").status, 404);
    EXPECT_EQ(answer("GET", "/api/game/userExists/").status, 404);
    EXPECT_EQ(answer("GET", "/api/game/userExists/p1/extra").status, 404);
    EXPECT_EQ(answer("POST", "/api/game/trials/").status, 404);
    EXPECT_EQ(answer("GET", "/api/game/levelsPerUserX/p1").status, 404);
}

}  // namespace
}  // namespace veldra
