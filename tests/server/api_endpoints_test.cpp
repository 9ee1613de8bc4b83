#include "server/api_endpoints.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "server/trial_record_sample.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

using Json = nlohmann::json;
using veldra::testing::record_json;
using veldra::testing::sample_trial_data;
using veldra::testing::ScratchDirectory;

class ApiEndpointsTest : public ::testing::Test {
protected:
    ScratchDirectory scratch{"api_endpoints"};
    TrialStore store{(scratch.path() / "study.sqlite").string(), SqliteOpen::create};

    void SetUp() override { store.register_users({"p1", "p2"}); }

    ApiAnswer submit(const TrialData& data) {
        return answer_trial_submit(store, record_json(data));
    }
    static std::string error_of(const ApiAnswer& answer) {
        return Json::parse(answer.body).at("error").get<std::string>();
    }
};

TEST_F(ApiEndpointsTest, ARecordIsStoredOnceAndItsRetryIsAlsoSuccess) {
    const TrialData data = sample_trial_data("p1", "levels/a.txt", 11, 40);
    const ApiAnswer first = submit(data);
    EXPECT_EQ(first.status, 201);
    EXPECT_EQ(first.content_type, "application/json");
    const ApiAnswer retry = submit(data);
    EXPECT_EQ(retry.status, 200);
    EXPECT_EQ(Json::parse(retry.body).at("status"), "already stored");
    EXPECT_EQ(store.records_of_user("p1").size(), 1u);
}

TEST_F(ApiEndpointsTest, ARetryWithItsFieldsInAnotherOrderIsTheSameRecord) {
    const TrialData data = sample_trial_data("p1", "a.txt", 11, 40);
    ASSERT_EQ(submit(data).status, 201);
    const Json sorted = Json::parse(record_json(data));  // keys sorted, spacing added
    EXPECT_EQ(answer_trial_submit(store, sorted.dump(2)).status, 200);
}

TEST_F(ApiEndpointsTest, ADifferentRecordForAStoredKeyIsAConflictAndTheFirstStays) {
    ASSERT_EQ(submit(sample_trial_data("p1", "a.txt", 11, 40)).status, 201);
    const ApiAnswer second = submit(sample_trial_data("p1", "a.txt", 11, 99));
    EXPECT_EQ(second.status, 409);
    EXPECT_DOUBLE_EQ(store.total_score_of_user("p1"), 40);
}

TEST_F(ApiEndpointsTest, RecordsThatCannotBeStoredAreRefusedWithTheReason) {
    EXPECT_EQ(answer_trial_submit(store, R"({"user_id": "p1",)").status, 400);
    EXPECT_NE(error_of(answer_trial_submit(store, "{")).find("malformed JSON"), std::string::npos);
    EXPECT_EQ(answer_trial_submit(store, "[1, 2]").status, 422);

    Json missing = Json::parse(record_json(sample_trial_data("p1", "a.txt", 1, 1)));
    missing["result"].erase("time_left");
    const ApiAnswer incomplete = answer_trial_submit(store, missing.dump());
    EXPECT_EQ(incomplete.status, 422);
    EXPECT_NE(error_of(incomplete).find("result.time_left"), std::string::npos);

    Json text_seed = Json::parse(record_json(sample_trial_data("p1", "a.txt", 1, 1)));
    text_seed["seed"] = "1";
    EXPECT_EQ(answer_trial_submit(store, text_seed.dump()).status, 422);

    // An automatic run's record has no user: nobody to file it under.
    TrialData automatic = sample_trial_data("p1", "a.txt", 1, 1);
    automatic.user_id.reset();
    EXPECT_EQ(submit(automatic).status, 422);
    EXPECT_TRUE(store.records_of_user("p1").empty());
}

TEST_F(ApiEndpointsTest, ARecordOfAnUnregisteredUserIsForbidden) {
    const ApiAnswer answer = submit(sample_trial_data("stranger", "a.txt", 1, 1));
    EXPECT_EQ(answer.status, 403);
    EXPECT_NE(error_of(answer).find("stranger"), std::string::npos);
    EXPECT_FALSE(store.user_exists("stranger"));
}

TEST_F(ApiEndpointsTest, QueriesAnswerWhatTheClientReads) {
    submit(sample_trial_data("p1", "b.txt", 1, 10));
    submit(sample_trial_data("p1", "a.txt", 2, 2.5));
    submit(sample_trial_data("p1", "b.txt", 3, 1));
    submit(sample_trial_data("p2", "c.txt", 1, 100));

    const ApiAnswer levels = answer_levels_per_user(store, "p1");
    EXPECT_EQ(levels.status, 200);
    EXPECT_EQ(Json::parse(levels.body), Json({"b.txt", "a.txt"}));

    const ApiAnswer total = answer_total_score_per_user(store, "p1");
    EXPECT_DOUBLE_EQ(Json::parse(total.body).at("total_score").get<double>(), 13.5);
    EXPECT_DOUBLE_EQ(
        Json::parse(answer_total_score_per_user(store, "p2").body).at("total_score").get<double>(),
        100);

    const Json trials = Json::parse(answer_trials_per_user(store, "p1", std::nullopt).body);
    ASSERT_EQ(trials.size(), 3u);
    EXPECT_EQ(trials[0], Json::parse(record_json(sample_trial_data("p1", "b.txt", 1, 10))));
    EXPECT_EQ(trials[1].at("level_info").at("filename"), "a.txt");
}

TEST_F(ApiEndpointsTest, TrialsWithFieldsHoldExactlyThoseFields) {
    submit(sample_trial_data("p1", "a.txt", 1, 10));
    const ApiAnswer answer = answer_trials_per_user(store, "p1", "level_info,result");
    ASSERT_EQ(answer.status, 200);
    const Json trials = Json::parse(answer.body);
    ASSERT_EQ(trials.size(), 1u);
    EXPECT_EQ(trials[0].size(), 2u);
    EXPECT_EQ(trials[0].at("result").at("trial_score"), 10);
    EXPECT_EQ(trials[0].at("level_info").at("filename"), "a.txt");

    const ApiAnswer unknown = answer_trials_per_user(store, "p1", "level_info,score");
    EXPECT_EQ(unknown.status, 400);
    EXPECT_NE(error_of(unknown).find("\"score\""), std::string::npos);
}

TEST_F(ApiEndpointsTest, UnknownUsersAreNotFoundExceptForTheExistenceQuestion) {
    EXPECT_EQ(answer_levels_per_user(store, "nobody").status, 404);
    EXPECT_EQ(answer_trials_per_user(store, "nobody", std::nullopt).status, 404);
    EXPECT_EQ(answer_total_score_per_user(store, "nobody").status, 404);

    const ApiAnswer no = answer_user_exists(store, "nobody");
    EXPECT_EQ(no.status, 200);
    EXPECT_EQ(no.body, "0");
    const ApiAnswer yes = answer_user_exists(store, "p2");
    EXPECT_EQ(yes.body, "1");
    EXPECT_EQ(yes.content_type, "text/plain");

    // A registered user with no records yet has empty answers, not errors.
    EXPECT_EQ(answer_levels_per_user(store, "p2").body, "[]");
    EXPECT_EQ(answer_trials_per_user(store, "p2", std::nullopt).body, "[]");
}

}  // namespace
}  // namespace veldra
