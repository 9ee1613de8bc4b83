#include "net/obj_api.h"

#include <gtest/gtest.h>

#include <optional>

#include "http_fixture.h"
#include "runtime/log.h"

namespace veldra {
namespace {

// The value once the promise is fulfilled; nothing while it is pending.
template <class T>
std::optional<T> outcome_of(const Promise<T>& promise) {
    if (!promise.is_fulfilled())
        return std::nullopt;
    return promise.value();
}

class ObjApiTest : public testing::HttpFixture {
protected:
    ObjApiTest() { api.initialize("https://study.example/veldra/", "game", "s3cret"); }
    obj_api& api = runtime.instance_create_depth<obj_api>(0, 0, 0);
    LogCapture log;
};

TEST_F(ObjApiTest, EveryRequestCarriesBasicAuthenticationToItsEndpoint) {
    EXPECT_EQ(api.api_base_url, "https://study.example/veldra/api/game");
    api.test_connection();
    api.user_exists("P017");
    api.user_get_total_score("P017");
    api.user_get_submitted_levels("P017");
    api.user_get_submitted_trials("P017");
    api.trial_submit(Value::make_struct());
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"GET", "https://study.example/veldra/"},
        {"GET", "https://study.example/veldra/api/game/userExists/P017"},
        {"GET", "https://study.example/veldra/api/game/totalScorePerUser/P017"},
        {"GET", "https://study.example/veldra/api/game/levelsPerUser/P017"},
        {"GET", "https://study.example/veldra/api/game/trialsPerUser/P017"},
        {"POST", "https://study.example/veldra/api/game/trials"}};
    ASSERT_EQ(http->requests.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(http->requests[i].method, expected[i].first);
        EXPECT_EQ(http->requests[i].url, expected[i].second);
        // base64 of "game:s3cret"
        ASSERT_FALSE(http->requests[i].headers.empty());
        EXPECT_EQ(http->requests[i].headers.front(),
                  (std::pair<std::string, std::string>{"Authorization", "Basic Z2FtZTpzM2NyZXQ="}));
    }
}

TEST_F(ObjApiTest, SubmittedTrialsAskForTheNamedFieldsOnly) {
    api.user_get_submitted_trials("P017", std::vector<std::string>{"level_info", "result"});
    EXPECT_EQ(last_request().url,
              "https://study.example/veldra/api/game/trialsPerUser/P017?fields=level_info,result");
}

TEST_F(ObjApiTest, AUserExistsOnlyForTheBodyOne) {
    for (const auto& [body, exists] : std::vector<std::pair<std::string, bool>>{
             {"1", true}, {"0", false}, {"true", false}, {"1\n", false}, {" 1", false}}) {
        const auto answer = api.user_exists("P017");
        answer_last(200, body);
        ASSERT_TRUE(outcome_of(answer)) << body;
        EXPECT_EQ(**outcome_of(answer), exists) << body;
    }
}

TEST_F(ObjApiTest, AnHttpErrorGivesNothingAndAWarningWithItsStatus) {
    const auto exists = api.user_exists("P999");
    answer_last(404, R"({"error": "unknown participant"})");
    ASSERT_TRUE(outcome_of(exists));
    EXPECT_FALSE(*outcome_of(exists));
    EXPECT_TRUE(log.contains("HTTP error: 404"));

    const auto levels = api.user_get_submitted_levels("P017");
    answer_last(300, "[]");
    EXPECT_FALSE(*outcome_of(levels));
    EXPECT_TRUE(log.contains("HTTP error: 300"));

    const auto stored = api.trial_submit(Value::make_struct());
    answer_last(409, R"({"error": "conflict"})");
    EXPECT_EQ(outcome_of(stored), false);
    EXPECT_TRUE(log.contains("HTTP error: 409"));
}

TEST_F(ObjApiTest, AnswersAreReadFromTheirJson) {
    const auto levels = api.user_get_submitted_levels("P017");
    answer_last(200, R"(["levels/a.txt", "levels\\b.txt"])");
    EXPECT_EQ(**outcome_of(levels), (std::vector<std::string>{"levels/a.txt", "levels\\b.txt"}));

    const auto total = api.user_get_total_score("P017");
    answer_last(200, R"({"total_score": 41.5})");
    EXPECT_EQ(**outcome_of(total), 41.5);

    const auto trials = api.user_get_submitted_trials("P017");
    answer_last(200, R"([{"seed": 3}])");
    EXPECT_EQ((*outcome_of(trials))->at(0).get("seed").as_number(), 3);

    const auto stored = api.trial_submit(Value::make_struct());
    answer_last(201, R"({"status":"stored"})");
    EXPECT_EQ(outcome_of(stored), true);
}

TEST_F(ObjApiTest, ABodyThatIsNotJsonIsAFailure) {
    const auto total = api.user_get_total_score("P017");
    answer_last(200, "<html>proxy login</html>");
    ASSERT_TRUE(outcome_of(total));
    EXPECT_FALSE(*outcome_of(total));
    const auto levels = api.user_get_submitted_levels("P017");
    answer_last(200, R"({"levels": []})");  // JSON, but not the array it should be
    EXPECT_FALSE(*outcome_of(levels));
}

TEST_F(ObjApiTest, TheConnectionNeedsAnAnswerWithAnOkStatus) {
    const auto refused = api.test_connection();
    runtime.raise_async_http(http->no_answer(http->ids.back()));
    EXPECT_EQ(outcome_of(refused), false);
    EXPECT_TRUE(log.contains("Connection refused"));
    const auto unauthorised = api.test_connection();
    answer_last(401, "");
    EXPECT_EQ(outcome_of(unauthorised), false);
    const auto ok = api.test_connection();
    answer_last(200, "ok");
    EXPECT_EQ(outcome_of(ok), true);
}

TEST_F(ObjApiTest, ItsHttpInstanceGoesWithIt) {
    const InstanceId wrapper = api.http;
    ASSERT_TRUE(runtime.instance_exists(wrapper));
    runtime.instance_destroy(api.id());
    EXPECT_FALSE(runtime.instance_exists(wrapper));
}

}  // namespace
}  // namespace veldra
