#include "net/obj_http.h"

#include <gtest/gtest.h>

#include <optional>

#include "http_fixture.h"

namespace veldra {
namespace {

class ObjHttpTest : public testing::HttpFixture {
protected:
    obj_http& wrapper = http_create(runtime);
};

// The response once the promise is fulfilled; nothing while it is pending.
std::optional<HttpResponse> outcome_of(const Promise<HttpResponse>& promise) {
    if (!promise.is_fulfilled())
        return std::nullopt;
    return promise.value();
}

TEST_F(ObjHttpTest, AnAnswerToSomeoneElsesRequestChangesNothing) {
    const Promise<HttpResponse> mine = wrapper.get("http://study.example/");
    const HttpRequestId my_id = http->ids.back();
    // Another instance's request, answered first: its id is not ours.
    const HttpRequestId other_id = runtime.services().http->request({});
    runtime.raise_async_http(http->answer(other_id, 200, "theirs"));
    EXPECT_FALSE(outcome_of(mine));
    EXPECT_EQ(wrapper.pending_requests(), 1u);

    runtime.raise_async_http(http->answer(my_id, 200, "ours"));
    ASSERT_TRUE(outcome_of(mine));
    EXPECT_EQ(outcome_of(mine)->text(), "ours");
    EXPECT_EQ(outcome_of(mine)->url, "http://study.example/");
    EXPECT_EQ(wrapper.pending_requests(), 0u);
    // A second event for the same id (a transport that repeats itself) is ignored too.
    runtime.raise_async_http(http->answer(my_id, 500, "again"));
    EXPECT_EQ(outcome_of(mine)->text(), "ours");
}

TEST_F(ObjHttpTest, SeveralPendingRequestsAreKeptApartWhateverOrderTheyFinishIn) {
    const Promise<HttpResponse> first = wrapper.get("http://study.example/a");
    const Promise<HttpResponse> second = wrapper.get("http://study.example/b");
    runtime.raise_async_http(http->answer(http->ids[1], 404, "b"));
    runtime.raise_async_http(http->answer(http->ids[0], 200, "a"));
    EXPECT_EQ(outcome_of(first)->text(), "a");
    EXPECT_EQ(outcome_of(first)->status, 200);
    EXPECT_EQ(outcome_of(second)->text(), "b");
    EXPECT_EQ(outcome_of(second)->status, 404);
}

TEST_F(ObjHttpTest, EveryRequestIsFulfilledAlsoWithoutAnAnswer) {
    const Promise<HttpResponse> promise = wrapper.get("http://127.0.0.1:9/");
    runtime.raise_async_http(http->no_answer(http->ids.back()));
    ASSERT_TRUE(outcome_of(promise));
    EXPECT_LT(outcome_of(promise)->engine_status, 0);
    EXPECT_EQ(outcome_of(promise)->error, "Connection refused");
    EXPECT_FALSE(outcome_of(promise)->is_ok());
}

TEST_F(ObjHttpTest, PostsSayWhatTheyCarryAndKeepTheCallersHeaders) {
    const HttpHeaders auth = {{"Authorization", "Basic eDp5"}, {"content-type", "text/csv"}};
    wrapper.post_string("http://s/x", "plain words", auth);
    EXPECT_EQ(last_request().method, "POST");
    EXPECT_EQ(last_request().body, "plain words");
    EXPECT_EQ(last_request().headers,
              (HttpHeaders{{"Authorization", "Basic eDp5"}, {"Content-Type", "text/plain"}}));

    Value record = Value::make_struct();
    record.set("user_id", Value("P017"));
    Value inner = Value::make_struct();
    inner.set("filename", Value("levels/a.txt"));
    record.set("level_info", inner);
    wrapper.post_json("http://s/trials", record, auth);
    EXPECT_EQ(last_request().body,
              R"({"user_id":"P017","level_info":{"filename":"levels/a.txt"}})");
    EXPECT_EQ(last_request().headers.back(),
              (std::pair<std::string, std::string>{"Content-Type", "application/json"}));
}

TEST(HttpResponseTest, OkMeansA2xxStatus) {
    HttpResponse response;
    for (const auto& [status, ok] :
         std::vector<std::pair<int, bool>>{{199, false}, {200, true}, {299, true}, {300, false}}) {
        response.status = status;
        EXPECT_EQ(response.is_ok(), ok) << status;
    }
}

TEST(HttpResponseTest, JsonIsNothingForABodyThatIsNotJson) {
    HttpResponse response;
    response.result = "<html>Bad gateway</html>";
    EXPECT_FALSE(response.json());
    response.result = R"({"total_score": 12.5})";
    ASSERT_TRUE(response.json());
    EXPECT_EQ(response.json()->get("total_score").as_number(), 12.5);
}

}  // namespace
}  // namespace veldra
