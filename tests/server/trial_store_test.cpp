#include "server/trial_store.h"

#include <gtest/gtest.h>

#include "support/scratch_directory.h"

namespace veldra {
namespace {

using veldra::testing::ScratchDirectory;

class TrialStoreTest : public ::testing::Test {
protected:
    ScratchDirectory scratch{"trial_store"};
    std::string path = (scratch.path() / "study.sqlite").string();
    TrialStore store{path, SqliteOpen::create};

    void SetUp() override { store.register_users({"p1", "p2"}); }
};

TEST_F(TrialStoreTest, RegisteredUsersExistAndRegisteringAgainChangesNothing) {
    store.register_users({"p1", "p3"});
    EXPECT_TRUE(store.user_exists("p1"));
    EXPECT_TRUE(store.user_exists("p3"));
    EXPECT_FALSE(store.user_exists("P1"));
    EXPECT_FALSE(store.user_exists(""));
}

TEST_F(TrialStoreTest, ARecordIsStoredOnceHoweverOftenItArrives) {
    const TrialKey key{.user_id = "p1", .level_file = "a.txt", .seed = 7};
    EXPECT_EQ(store.store_trial(key, 5, R"({"n":1})"), StoreOutcome::stored);
    EXPECT_EQ(store.store_trial(key, 5, R"({"n":1})"), StoreOutcome::already_stored);
    EXPECT_EQ(store.store_trial(key, 5, R"({"n":1})"), StoreOutcome::already_stored);
    EXPECT_EQ(store.records_of_user("p1"), std::vector<std::string>{R"({"n":1})"});
    EXPECT_DOUBLE_EQ(store.total_score_of_user("p1"), 5);
}

TEST_F(TrialStoreTest, ADifferentRecordUnderAStoredKeyIsRefusedAndTheFirstKept) {
    const TrialKey key{.user_id = "p1", .level_file = "a.txt", .seed = 7};
    ASSERT_EQ(store.store_trial(key, 5, R"({"n":1})"), StoreOutcome::stored);
    EXPECT_EQ(store.store_trial(key, 9, R"({"n":2})"), StoreOutcome::conflict);
    EXPECT_EQ(store.records_of_user("p1"), std::vector<std::string>{R"({"n":1})"});
    EXPECT_DOUBLE_EQ(store.total_score_of_user("p1"), 5);
}

TEST_F(TrialStoreTest, EachPartOfTheKeyMakesADifferentRecord) {
    EXPECT_EQ(store.store_trial({"p1", "a.txt", 7}, 1, "{}"), StoreOutcome::stored);
    EXPECT_EQ(store.store_trial({"p2", "a.txt", 7}, 1, "{}"), StoreOutcome::stored);
    EXPECT_EQ(store.store_trial({"p1", "b.txt", 7}, 1, "{}"), StoreOutcome::stored);
    EXPECT_EQ(store.store_trial({"p1", "a.txt", 8}, 1, "{}"), StoreOutcome::stored);
    EXPECT_EQ(store.records_of_user("p1").size(), 3u);
}

TEST_F(TrialStoreTest, QueriesAnswerPerUserInArrivalOrder) {
    store.store_trial({"p1", "b.txt", 1}, 2.5, R"({"i":1})");
    store.store_trial({"p2", "c.txt", 1}, 100, R"({"i":2})");
    store.store_trial({"p1", "a.txt", 1}, 1, R"({"i":3})");
    store.store_trial({"p1", "b.txt", 2}, 4, R"({"i":4})");
    EXPECT_EQ(store.levels_of_user("p1"), (std::vector<std::string>{"b.txt", "a.txt"}));
    EXPECT_EQ(store.records_of_user("p1"),
              (std::vector<std::string>{R"({"i":1})", R"({"i":3})", R"({"i":4})"}));
    EXPECT_DOUBLE_EQ(store.total_score_of_user("p1"), 7.5);
    EXPECT_DOUBLE_EQ(store.total_score_of_user("p3"), 0);
    EXPECT_TRUE(store.levels_of_user("p3").empty());
}

TEST_F(TrialStoreTest, RecordsSurviveReopeningAndABackupHoldsThemAll) {
    store.store_trial({"p1", "a.txt", 1}, 1, R"({"i":1})");
    store.store_trial({"p2", "a.txt", 1}, 2, R"({"i":2})");
    const std::string copy = (scratch.path() / "copy.sqlite").string();
    store.backup_to(copy);
    // Written after the backup: in the original only.
    store.store_trial({"p2", "b.txt", 1}, 3, R"({"i":3})");

    TrialStore reopened(path, SqliteOpen::existing);
    EXPECT_EQ(reopened.records_of_user("p2").size(), 2u);
    TrialStore backup(copy, SqliteOpen::existing);
    EXPECT_TRUE(backup.user_exists("p1"));
    EXPECT_EQ(backup.records_of_user("p1"), std::vector<std::string>{R"({"i":1})"});
    EXPECT_EQ(backup.records_of_user("p2"), std::vector<std::string>{R"({"i":2})"});
}

TEST_F(TrialStoreTest, OpeningAMissingDatabaseToReadFailsAndLeavesNoFile) {
    const auto missing = scratch.path() / "missing.sqlite";
    EXPECT_THROW(TrialStore(missing.string(), SqliteOpen::existing), SqliteError);
    EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST_F(TrialStoreTest, TextsWithQuotesAndSqlAreDataNotStatements) {
    const std::string id = "p'); DROP TABLE trials; --";
    store.register_users({id});
    EXPECT_EQ(store.store_trial({id, "x'y.txt", 1}, 1, "{}"), StoreOutcome::stored);
    EXPECT_EQ(store.levels_of_user(id), std::vector<std::string>{"x'y.txt"});
}

}  // namespace
}  // namespace veldra
