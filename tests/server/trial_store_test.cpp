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

TEST_F(TrialStoreTest, TheOverviewHasEveryParticipantByLevelAndTheNewestRecordsFirst) {
    store.register_users({"p3"});
    store.store_trial({"p2", "b.txt", 1}, 3, "{}");
    store.store_trial({"p1", "a.txt", 1}, 1, "{}");
    store.store_trial({"p2", "a.txt", 1}, 2, "{}");
    store.store_trial({"p2", "a.txt", 2}, 4, "{}");
    const StudyOverview overview = store.study_overview(2);
    EXPECT_EQ(overview.levels, (std::vector<std::string>{"b.txt", "a.txt"}));
    ASSERT_EQ(overview.participants.size(), 3u);
    EXPECT_EQ(overview.participants[0].user_id, "p1");
    EXPECT_EQ(overview.participants[0].records, (std::vector<std::int64_t>{0, 1}));
    EXPECT_EQ(overview.participants[1].records, (std::vector<std::int64_t>{1, 2}));
    EXPECT_EQ(overview.participants[1].levels_with_records, 2u);
    EXPECT_EQ(overview.participants[2].records, (std::vector<std::int64_t>{0, 0}));
    EXPECT_EQ(overview.records, 4);
    ASSERT_EQ(overview.latest.size(), 2u);
    EXPECT_DOUBLE_EQ(overview.latest[0].trial_score, 4);
    EXPECT_DOUBLE_EQ(overview.latest[1].trial_score, 2);
    EXPECT_EQ(overview.latest[0].user_id, "p2");
    EXPECT_EQ(overview.latest[0].level_file, "a.txt");
}

TEST_F(TrialStoreTest, AParticipantIsHeardFromByTheirRequestsOnly) {
    store.note_heard_from("p1");
    store.note_heard_from("nobody");  // not registered: nothing to note
    store.store_trial({"p2", "a.txt", 1}, 1, "{}");
    const StudyOverview overview = store.study_overview(5);
    ASSERT_EQ(overview.participants.size(), 2u);
    for (const ParticipantProgress& participant : overview.participants) {
        ASSERT_EQ(participant.last_heard.size(), 20u) << participant.last_heard;
        EXPECT_EQ(participant.last_heard.back(), 'Z');
    }
    EXPECT_FALSE(store.user_exists("nobody"));
}

TEST_F(TrialStoreTest, DeletingAParticipantsRecordsLeavesEveryoneElsesAndTheRegistration) {
    store.store_trial({"p1", "a.txt", 1}, 1, R"({"i":1})");
    store.store_trial({"p1", "b.txt", 1}, 1, R"({"i":2})");
    store.store_trial({"p2", "a.txt", 1}, 1, R"({"i":3})");
    EXPECT_EQ(store.record_count_of_user("p1"), 2);
    EXPECT_EQ(store.delete_records_of_user("p1"), 2);
    EXPECT_EQ(store.record_count_of_user("p1"), 0);
    EXPECT_TRUE(store.user_exists("p1"));
    EXPECT_EQ(store.records_of_user("p2"), std::vector<std::string>{R"({"i":3})"});
    EXPECT_TRUE(store.study_overview(1).participants[0].last_heard.empty());
    // The same record may arrive again afterwards (a game still running) and is stored anew.
    EXPECT_EQ(store.store_trial({"p1", "a.txt", 1}, 1, R"({"i":1})"), StoreOutcome::stored);
}

TEST(TrialStoreUpgradeTest, ADatabaseOfTheFirstVersionGainsLastHeardAndKeepsItsRecords) {
    ScratchDirectory scratch{"trial_store_upgrade"};
    const std::string path = (scratch.path() / "old.sqlite").string();
    {
        SqliteConnection old(path, SqliteOpen::create);
        old.execute(
            "CREATE TABLE users (user_id TEXT PRIMARY KEY NOT NULL);"
            "CREATE TABLE trials (id INTEGER PRIMARY KEY, user_id TEXT NOT NULL REFERENCES "
            "users (user_id), level_file TEXT NOT NULL, seed REAL NOT NULL, trial_score REAL "
            "NOT NULL, received_at TEXT NOT NULL DEFAULT '2026-01-01T00:00:00Z', record TEXT "
            "NOT NULL, UNIQUE (user_id, level_file, seed));"
            "INSERT INTO users VALUES ('p1');"
            "INSERT INTO trials (user_id, level_file, seed, trial_score, record) "
            "VALUES ('p1', 'a.txt', 1, 2, '{}');"
            "PRAGMA user_version = 1;");
    }
    TrialStore store(path, SqliteOpen::create);
    store.note_heard_from("p1");
    EXPECT_EQ(store.records_of_user("p1"), std::vector<std::string>{"{}"});
    EXPECT_FALSE(store.study_overview(1).participants.at(0).last_heard.empty());
}

}  // namespace
}  // namespace veldra
