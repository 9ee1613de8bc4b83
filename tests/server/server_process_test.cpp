// The real program on a free port of 127.0.0.1, spoken to over HTTP by cpp-httplib's client.

#include <gtest/gtest.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

#include <fstream>

#include "runtime/file_io.h"
#include "server/server_process.h"
#include "server/trial_record_sample.h"
#include "support/scratch_directory.h"
#include "trials/trial_data.h"

namespace veldra {
namespace {

using Json = nlohmann::json;
using veldra::testing::record_json;
using veldra::testing::sample_trial_data;
using veldra::testing::ScratchDirectory;
using veldra::testing::ServerProcess;

class ServerProcessTest : public ::testing::Test {
protected:
    ScratchDirectory scratch{"server_process"};
    std::string database = (scratch.path() / "study.sqlite").string();
    std::string credentials = (scratch.path() / "api_env.json").string();
    std::string users = (scratch.path() / "users.txt").string();

    void SetUp() override {
        std::ofstream(credentials) << R"({"remote_url": "http://127.0.0.1/", )"
                                      R"("api_username": "lab", "api_password": "s3cret-pw"})";
        std::ofstream(users) << "# pilot\nP01\nP02\n";
    }
    std::vector<std::string> serving(std::vector<std::string> more) const {
        std::vector<std::string> arguments = {"db=" + database, "credentials=" + credentials,
                                              "users=" + users, "port=0"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }
    static httplib::Client client_of(int port) {
        httplib::Client client("127.0.0.1", port);
        client.set_basic_auth("lab", "s3cret-pw");
        client.set_connection_timeout(10);
        client.set_read_timeout(10);
        return client;
    }
};

TEST_F(ServerProcessTest, AStudyFromFirstRecordToExportAndACleanStop) {
    ServerProcess server(serving({"user_ids=P03"}));
    const int port = server.wait_until_listening();
    ASSERT_GT(port, 0) << server.output();
    httplib::Client client = client_of(port);

    const auto connection = client.Get("/");
    ASSERT_TRUE(connection);
    EXPECT_EQ(connection->status, 200);

    const TrialData first = sample_trial_data("P01", "levels/a.txt", 5, 30);
    const TrialData second = sample_trial_data("P03", "levels/b.txt", 6, 12);
    const auto posted = client.Post("/api/game/trials", record_json(first), "application/json");
    ASSERT_TRUE(posted);
    EXPECT_EQ(posted->status, 201);
    // The game's retry after an answer it never saw.
    EXPECT_EQ(client.Post("/api/game/trials", record_json(first), "application/json")->status, 200);
    EXPECT_EQ(client.Post("/api/game/trials", record_json(second), "application/json")->status,
              201);
    EXPECT_EQ(
        client
            .Post("/api/game/trials", record_json(sample_trial_data("P01", "levels/a.txt", 5, 31)),
                  "application/json")
            ->status,
        409);

    EXPECT_EQ(client.Get("/api/game/userExists/P02")->body, "1");
    EXPECT_EQ(client.Get("/api/game/userExists/P09")->body, "0");
    EXPECT_EQ(Json::parse(client.Get("/api/game/levelsPerUser/P01")->body), Json({"levels/a.txt"}));
    EXPECT_EQ(Json::parse(client.Get("/api/game/totalScorePerUser/P01")->body)["total_score"],
              30.0);
    const Json picked =
        Json::parse(client.Get("/api/game/trialsPerUser/P01?fields=level_info,result")->body);
    ASSERT_EQ(picked.size(), 1u);
    EXPECT_EQ(picked[0].size(), 2u);
    EXPECT_EQ(client.Get("/api/game/levelsPerUser/P09")->status, 404);

    // What a broken or hostile client gets.
    EXPECT_EQ(client.Post("/api/game/trials", "{not json", "application/json")->status, 400);
    EXPECT_EQ(client.Delete("/api/game/trials")->status, 405);
    const auto too_big =
        client.Post("/api/game/trials", std::string(70000, ' '), "application/json");
    ASSERT_TRUE(too_big);
    EXPECT_EQ(too_big->status, 413);
    httplib::Client stranger("127.0.0.1", port);
    stranger.set_basic_auth("lab", "guess");
    EXPECT_EQ(stranger.Get("/api/game/userExists/P01")->status, 401);

    // A backup taken while the server runs holds what was committed.
    const std::string copy = (scratch.path() / "copy.sqlite").string();
    ServerProcess backup({"db=" + database, "backup=" + copy});
    EXPECT_EQ(backup.wait_for_exit(), 0) << backup.output();

    // Idle keep-alive connections would hold the stop up until they time out.
    client.stop();
    stranger.stop();
    EXPECT_EQ(server.terminate(), 0);
    EXPECT_NE(server.output().find("Z stopped"), std::string::npos) << server.output();
    // One line per request; the password appears in none, in clear or encoded.
    std::size_t request_lines = 0;
    for (std::size_t at = server.output().find(" in="); at != std::string::npos;
         at = server.output().find(" in=", at + 1))
        ++request_lines;
    EXPECT_EQ(request_lines, 15u) << server.output();
    EXPECT_EQ(server.output().find("s3cret"), std::string::npos);
    EXPECT_EQ(server.output().find("bGFiOnMzY3JldC1wdw=="), std::string::npos);  // lab:s3cret-pw

    for (const std::string& db : {database, copy}) {
        const std::string csv = (scratch.path() / "export.csv").string();
        ServerProcess exporter({"db=" + db, "export=" + csv});
        ASSERT_EQ(exporter.wait_for_exit(), 0) << exporter.output();
        EXPECT_EQ(
            *read_whole_file(csv, 1 << 20).text,
            trial_data_as_csv_headers() + trial_data_as_csv(first) + trial_data_as_csv(second))
            << db;
    }
}

TEST_F(ServerProcessTest, AClientOverTheRateIsToldToSlowDown) {
    // At most one request per ten seconds from one address.
    ServerProcess server(serving({"rate_limit=0.1"}));
    const int port = server.wait_until_listening();
    ASSERT_GT(port, 0) << server.output();
    httplib::Client client = client_of(port);
    EXPECT_EQ(client.Get("/")->status, 200);
    const auto refused = client.Get("/");
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->status, 429);
    EXPECT_EQ(refused->get_header_value("Retry-After"), "1");
    client.stop();
    EXPECT_EQ(server.terminate(), 0);
}

TEST_F(ServerProcessTest, WrongStartsEndWithAMessageAndStatus) {
    ServerProcess unknown({"db=" + database, "credentials=" + credentials, "prot=80"});
    EXPECT_EQ(unknown.wait_for_exit(), 2);
    ServerProcess no_credentials(
        {"db=" + database, "credentials=" + (scratch.path() / "none.json").string()});
    EXPECT_EQ(no_credentials.wait_for_exit(), 1);
    ServerProcess missing_db({"db=" + (scratch.path() / "none.sqlite").string(),
                              "export=" + (scratch.path() / "x.csv").string()});
    EXPECT_EQ(missing_db.wait_for_exit(), 1);
    // The page's password may not be the one every participant's copy of the game holds.
    const std::string same = (scratch.path() / "same_password").string();
    std::ofstream(same) << "s3cret-pw\n";
    ServerProcess same_password(serving({"admin_password_file=" + same}));
    EXPECT_EQ(same_password.wait_for_exit(), 1);
    ServerProcess short_password(serving({"admin_password_file=" + users}));  // "# pilot"
    EXPECT_EQ(short_password.wait_for_exit(), 1);
    ServerProcess help({"--help"});
    EXPECT_EQ(help.wait_for_exit(), 0);
    EXPECT_NE(help.output().find("backup="), std::string::npos);
}

}  // namespace
}  // namespace veldra
