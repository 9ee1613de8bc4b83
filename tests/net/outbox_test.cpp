#include "net/outbox.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "async/promise_test_support.h"
#include "net/outbox_sending.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

using testing::Deferred;
using testing::ScratchDirectory;

std::string record(const std::string& user, const std::string& level, double seed) {
    return R"({"user_id":")" + user + R"(","seed":)" + std::to_string(seed) +
           R"(,"level_info":{"filename":")" + level + R"("}})";
}

OutboxEntry put(Outbox& outbox, const std::string& user, const std::string& level, double seed) {
    std::string error;
    std::optional<OutboxEntry> entry = outbox.put(
        {.user_id = user, .level_file = level, .seed = seed}, record(user, level, seed), error);
    EXPECT_TRUE(entry) << error;
    return entry.value_or(OutboxEntry{});
}

std::vector<std::string> bodies(const std::vector<OutboxEntry>& entries) {
    std::vector<std::string> out;
    for (const OutboxEntry& entry : entries)
        out.push_back(entry.body);
    return out;
}

TEST(OutboxTest, KeepsEachRecordOnceInTheOrderItWasPutUntilConfirmed) {
    ScratchDirectory scratch("outbox");
    Outbox outbox(outbox_folder(scratch.path()));
    const OutboxEntry first = put(outbox, "P1", "levels/a.txt", 7);
    put(outbox, "P2", "levels/a.txt", 7);
    put(outbox, "P1", "levels/b.txt", 8);
    // The same key again (a retry that found the first copy waiting) writes nothing new.
    EXPECT_EQ(put(outbox, "P1", "levels/a.txt", 7).path, first.path);

    EXPECT_EQ(bodies(outbox.waiting("P1")),
              (std::vector<std::string>{record("P1", "levels/a.txt", 7),
                                        record("P1", "levels/b.txt", 8)}));
    EXPECT_EQ(outbox.waiting(std::nullopt).size(), 3u);
    EXPECT_TRUE(outbox.waiting("P3").empty());

    EXPECT_EQ(outbox.confirm(first), "");
    EXPECT_EQ(bodies(outbox.waiting("P1")),
              (std::vector<std::string>{record("P1", "levels/b.txt", 8)}));
    // Once confirmed, the same record may be put again: it is a new submission.
    EXPECT_NE(put(outbox, "P1", "levels/a.txt", 7).path, std::filesystem::path());
    EXPECT_EQ(outbox.waiting("P1").size(), 2u);
}

TEST(OutboxTest, LeavesFilesThatAreNotWholeRecordsAloneAndNamesThem) {
    ScratchDirectory scratch("outbox");
    Outbox outbox(scratch.path());
    put(outbox, "P1", "a.txt", 1);
    std::ofstream(scratch.path() / "0-cut.json") << R"({"user_id":"P1","se)";
    std::ofstream(scratch.path() / "1-x.json.part") << record("P1", "b.txt", 2);
    std::ofstream(scratch.path() / "notes.txt") << "hello";

    std::vector<std::string> problems;
    EXPECT_EQ(outbox.waiting("P1", &problems).size(), 1u);
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_NE(problems[0].find("0-cut.json\" is not a trial record"), std::string::npos);
    EXPECT_TRUE(std::filesystem::exists(scratch.path() / "0-cut.json"));
}

TEST(OutboxTest, AFolderThatCannotBeMadeIsReportedWithItsPath) {
    ScratchDirectory scratch("outbox");
    std::ofstream(scratch.path() / "taken") << "a file where the folder should be";
    Outbox outbox(scratch.path() / "taken" / "outbox");
    std::string error;
    EXPECT_FALSE(outbox.put({.user_id = "P1", .level_file = "a.txt", .seed = 1}, "{}", error));
    EXPECT_NE(error.find("taken"), std::string::npos) << error;
    EXPECT_TRUE(outbox.waiting(std::nullopt).empty());
}

class OutboxSendingTest : public testing::PromiseFixture {
protected:
    ScratchDirectory scratch{"outbox"};
    std::shared_ptr<Outbox> outbox = std::make_shared<Outbox>(scratch.path());
    std::vector<std::string> posted;
};

TEST_F(OutboxSendingTest, SendsOldestFirstAndStopsAtTheFirstRecordNotConfirmed) {
    put(*outbox, "P1", "a.txt", 1);
    put(*outbox, "P1", "b.txt", 2);
    put(*outbox, "P2", "a.txt", 3);
    put(*outbox, "P1", "c.txt", 4);
    put(*outbox, "P1", "d.txt", 5);
    std::vector<Deferred<bool>> answers(4);
    std::optional<OutboxSendResult> result;
    outbox_send_waiting(outbox, "P1", [&](const std::string& body) {
        posted.push_back(body);
        return answers[posted.size() - 1].promise;
    }).and_then([&](const OutboxSendResult& r) { result = r; });

    // One request at a time: the next waits for the answer to the one before.
    ASSERT_EQ(posted.size(), 1u);
    answers[0].resolve(true);
    step_event_loop();
    ASSERT_EQ(posted.size(), 2u);
    answers[1].resolve(true);
    step_event_loop();
    ASSERT_EQ(posted.size(), 3u);
    answers[2].resolve(false);
    step_event_loop();

    ASSERT_TRUE(result);
    EXPECT_EQ(result->sent, 2u);
    EXPECT_EQ(result->waiting, 2u);
    EXPECT_EQ(posted, (std::vector<std::string>{record("P1", "a.txt", 1), record("P1", "b.txt", 2),
                                                record("P1", "c.txt", 4)}));
    EXPECT_EQ(bodies(outbox->waiting("P1")),
              (std::vector<std::string>{record("P1", "c.txt", 4), record("P1", "d.txt", 5)}));
    EXPECT_EQ(outbox->waiting("P2").size(), 1u);
}

TEST_F(OutboxSendingTest, AnEmptyOutboxIsDoneWithoutARequest) {
    std::optional<OutboxSendResult> result;
    outbox_send_waiting(outbox, std::nullopt, [&](const std::string& body) {
        posted.push_back(body);
        return promise_resolve(true);
    }).and_then([&](const OutboxSendResult& r) { result = r; });
    step_event_loop();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->sent + result->waiting, 0u);
    EXPECT_TRUE(posted.empty());
}

}  // namespace
}  // namespace veldra
