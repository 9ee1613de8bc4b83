// Bad input against the real program: each is answered 4xx (or 429) and the database is left as
// it was.

#include <gtest/gtest.h>
#include <httplib.h>

#include <fstream>
#include <set>

#include "server/server_process.h"
#include "server/sqlite_connection.h"
#include "server/trial_record_sample.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

using veldra::testing::record_json;
using veldra::testing::sample_trial_data;
using veldra::testing::ScratchDirectory;
using veldra::testing::ServerProcess;

class HostileInputTest : public ::testing::Test {
protected:
    ScratchDirectory scratch{"hostile_input"};
    std::string database = (scratch.path() / "study.sqlite").string();
    std::string credentials = (scratch.path() / "api_env.json").string();

    void SetUp() override {
        std::ofstream(credentials) << R"({"api_username": "lab", "api_password": "s3cret-pw"})";
    }
    std::vector<std::string> serving(const std::string& rate_limit) const {
        return {"db=" + database, "credentials=" + credentials, "user_ids=P01,P02", "port=0",
                "rate_limit=" + rate_limit};
    }
    static httplib::Client client_of(int port) {
        httplib::Client client("127.0.0.1", port);
        client.set_basic_auth("lab", "s3cret-pw");
        client.set_connection_timeout(10);
        client.set_read_timeout(10);
        client.set_write_timeout(10);
        return client;
    }
    // Every registered id and stored record, as one text to compare before and after.
    std::string database_contents() const {
        SqliteConnection db(database, SqliteOpen::existing);
        std::string text;
        SqliteStatement users(db, "SELECT user_id FROM users ORDER BY user_id");
        while (users.step())
            text += "user " + users.column_text(0) + "\n";
        SqliteStatement trials(db,
                               "SELECT id, user_id, level_file, record FROM trials ORDER BY id");
        while (trials.step())
            text += std::to_string(trials.column_int(0)) + " " + trials.column_text(1) + " " +
                    trials.column_text(2) + " " + trials.column_text(3) + "\n";
        return text;
    }
};

TEST_F(HostileInputTest, BadBodiesIdsPathsAndMethodsGet4xxAndChangeNothing) {
    ServerProcess server(serving("0"));
    const int port = server.wait_until_listening();
    ASSERT_GT(port, 0) << server.output();
    httplib::Client client = client_of(port);
    const std::string good = record_json(sample_trial_data("P01", "levels/a.txt", 1, 2));
    ASSERT_EQ(client.Post("/api/game/trials", good, "application/json")->status, 201);
    const std::string before = database_contents();

    const auto status_of = [](const httplib::Result& result) {
        return result ? result->status : 0;
    };
    const auto post = [&](const std::string& body) {
        return status_of(client.Post("/api/game/trials", body, "application/json"));
    };
    // Truncated JSON, anywhere along the record.
    for (const std::size_t length :
         {std::size_t{0}, std::size_t{1}, good.size() / 2, good.size() - 1})
        EXPECT_EQ(post(good.substr(0, length)), 400) << length;
    // A body of 10 MB against the default limit of 64 KiB.
    EXPECT_EQ(post(std::string(10u << 20, ' ') + good), 413);
    // SQL in user ids: an unknown participant, whatever the text would do as a statement.
    EXPECT_EQ(post(record_json(sample_trial_data("P01'; DROP TABLE trials; --", "a.txt", 1, 2))),
              403);
    EXPECT_EQ(post(record_json(sample_trial_data("x' OR '1'='1", "a.txt", 1, 2))), 403);
    EXPECT_EQ(status_of(client.Get("/api/game/trialsPerUser/x'%20OR%20'1'%3D'1")), 404);
    EXPECT_EQ(status_of(client.Get("/api/game/totalScorePerUser/P01';DELETE%20FROM%20trials;--")),
              404);
    // Path traversal in level names, in a record and in a path.
    for (const char* level :
         {"../../etc/passwd", "levels/../../x.txt", "..", "levels\\..\\x", "a.txt\nforged;line"})
        EXPECT_EQ(post(record_json(sample_trial_data("P01", level, 1, 2))), 422) << level;
    EXPECT_EQ(status_of(client.Get("/api/game/levelsPerUser/../../etc/passwd")), 404);
    EXPECT_EQ(status_of(client.Get("/api/game/levelsPerUser/..%2F..%2Fetc%2Fpasswd")), 404);
    // Wrong methods.
    EXPECT_EQ(status_of(client.Get("/api/game/trials")), 405);
    EXPECT_EQ(status_of(client.Put("/api/game/trials", good, "application/json")), 405);
    EXPECT_EQ(status_of(client.Delete("/api/game/trialsPerUser/P01")), 405);
    EXPECT_EQ(status_of(client.Patch("/api/game/trials", good, "application/json")), 405);
    EXPECT_EQ(status_of(client.Post("/api/game/userExists/P01", "", "text/plain")), 405);
    // Without a page password the researcher's page does not exist, even for the game's account.
    EXPECT_EQ(status_of(client.Get("/admin/")), 404);

    EXPECT_EQ(database_contents(), before);
    client.stop();
    EXPECT_EQ(server.terminate(), 0) << server.output();
}

TEST_F(HostileInputTest, AFloodFromOneAddressGets429AndOnlyAnsweredRecordsAreStored) {
    ServerProcess server(serving("0.1"));
    const int port = server.wait_until_listening();
    ASSERT_GT(port, 0) << server.output();
    httplib::Client client = client_of(port);
    std::set<double> stored_seeds;
    int refused = 0;
    for (int seed = 1; seed <= 40; ++seed) {
        const auto answer = client.Post(
            "/api/game/trials", record_json(sample_trial_data("P02", "levels/a.txt", seed, 1)),
            "application/json");
        ASSERT_TRUE(answer);
        if (answer->status == 201)
            stored_seeds.insert(seed);
        else if (answer->status == 429)
            ++refused;
        else
            ADD_FAILURE() << answer->status;
    }
    EXPECT_GE(refused, 30);
    std::set<double> in_database;
    SqliteConnection db(database, SqliteOpen::existing);
    SqliteStatement seeds(db, "SELECT seed FROM trials");
    while (seeds.step())
        in_database.insert(seeds.column_double(0));
    EXPECT_EQ(in_database, stored_seeds);
    client.stop();
    EXPECT_EQ(server.terminate(), 0);
}

}  // namespace
}  // namespace veldra
