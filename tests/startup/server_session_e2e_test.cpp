// Server sessions end to end: the real veldra-server on a free port with its database in a
// scratch folder, and the real program, headless, playing sessions against it with user_id=.
// What lands in the database is read back with the server's own export.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "startup/study_server.h"
#include "support/file_text.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

namespace fs = std::filesystem;
using testing::lines_of;
using testing::ServerProcess;
using testing::StoredRecord;
using testing::text_of;

// The total the session ended with, from its log line; NaN when it did not end.
double logged_total(const std::string& log, const std::string& user_id) {
    const std::string line =
        "Server session finished for \"" + user_id + "\" with a total score of ";
    const std::size_t at = log.find(line);
    return at == std::string::npos ? std::nan("") : std::stod(log.substr(at + line.size()));
}

double score_of(const testing::StoredRecord& record) {
    return std::stod(record.at("result.trial_score"));
}

class ServerSessionEndToEndTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_GT(server.port(), 0) << server.output();
        server.write_api_env("s3cret");
        std::ofstream(folder.path() / "one.txt") << "xxxxxxx\nx p  hx\nx  f  x\nxm    x\nxxxxxxx\n";
        std::ofstream(folder.path() / "two.txt")
            << "xxxxxxxx\nxh    px\nx ff   x\nx   m  x\nxxxxxxxx\n";
        std::ofstream(folder.path() / "three.txt") << "xxxxxx\nxp f x\nx  m x\nxxxxxx\n";
        write_config("three.json", R"(["one.txt", "two.txt", "three.txt"])");
        fs::create_directories(folder.path() / "logs");
    }

    void write_api_env_for(const std::string& url, const std::string& password,
                           const std::string& ca_file) {
        std::ofstream(folder.path() / ".api_env.json")
            << R"({"remote_url": ")" << url << R"(", "api_username": "game", "api_password": ")"
            << password << R"(")" << (ca_file.empty() ? "" : R"(, "ca_file": ")" + ca_file + "\"")
            << "}";
    }
    void write_config(const std::string& name, const std::string& levels) {
        std::ofstream(folder.path() / name)
            << R"({ "trial_time": 2, "game_speed": 4, "shuffle_levels": false,
                    "show_trial_result_menu": true, "levels": )"
            << levels << " }";
    }
    // Runs the program headless in the scratch folder; its exit status.
    int veldra(const std::string& arguments) {
        const std::string command = "cd '" + folder.path().string() + "' && '" +
                                    fs::absolute("veldra").string() + "' headless=1 " + arguments +
                                    " >out.txt 2>err.txt";
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    std::string errors() const { return text_of(folder.path() / "err.txt"); }
    std::string log(const std::string& name) const {
        return text_of(folder.path() / "logs" / name);
    }
    testing::ScratchDirectory folder{"veldra-server-session"};
    testing::StudyServer server{folder.path(), "P017,P018,P019"};
};

TEST_F(ServerSessionEndToEndTest, ASessionOfThreeLevelsIsStoredAndASecondRunFindsItComplete) {
    ASSERT_EQ(veldra("user_id=P017 config=three.json log_output_file=logs/first.log"), 0)
        << errors();
    std::vector<StoredRecord> records = server.stored();
    ASSERT_EQ(records.size(), 3u);
    const char* levels[] = {"one.txt", "two.txt", "three.txt"};
    double total = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(records[i]["user_id"], "P017");
        EXPECT_EQ(records[i]["level_info.filename"], levels[i]);
        EXPECT_EQ(records[i]["level_info.play_order"], std::to_string(i));
        total += score_of(records[i]);
    }
    // Each record was kept on disk too, in the autosave beside the log.
    std::vector<fs::path> autosaves;
    for (const auto& entry : fs::directory_iterator(folder.path() / "logs"))
        if (entry.path().extension() == ".csv")
            autosaves.push_back(entry.path());
    ASSERT_EQ(autosaves.size(), 1u);
    EXPECT_EQ(lines_of(autosaves[0]).size(), 4u);
    const std::string first = log("first.log");
    EXPECT_NE(first.find("Connected to the research server at http://127.0.0.1:" +
                         std::to_string(server.port()) + "/"),
              std::string::npos);

    EXPECT_NEAR(logged_total(first, "P017"), total, 0.01);

    // Everything is submitted: the end at once, with the total the server holds.
    ASSERT_EQ(veldra("user_id=P017 config=three.json log_output_file=logs/again.log"), 0)
        << errors();
    const std::string again = log("again.log");
    EXPECT_EQ(again.find("level 1 of 3"), std::string::npos);
    EXPECT_NEAR(logged_total(again, "P017"), total, 0.01);
    EXPECT_EQ(server.stored().size(), 3u);
}

// An earlier run stored the second level only: the session plays the first and the third, in
// list order, with their places in the list, and ends with the total of all three.
TEST_F(ServerSessionEndToEndTest, AnInterruptedSessionResumesWithTheLevelsNotYetSubmitted) {
    write_config("second_only.json", R"(["two.txt"])");
    ASSERT_EQ(veldra("user_id=P018 config=second_only.json log_output_file=logs/a.log"), 0)
        << errors();
    ASSERT_EQ(veldra("user_id=P018 config=three.json log_output_file=logs/b.log"), 0) << errors();
    const std::vector<StoredRecord> records = server.stored();
    ASSERT_EQ(records.size(), 3u);
    EXPECT_EQ(records[1].at("level_info.filename"), "one.txt");
    EXPECT_EQ(records[1].at("level_info.play_order"), "0");
    EXPECT_EQ(records[2].at("level_info.filename"), "three.txt");
    EXPECT_EQ(records[2].at("level_info.play_order"), "2");
    const std::string resumed = log("b.log");
    EXPECT_NE(resumed.find("level 1 of 3 (\"one.txt\")"), std::string::npos);
    EXPECT_NE(resumed.find("level 3 of 3 (\"three.txt\")"), std::string::npos);
    EXPECT_EQ(resumed.find("level 2 of 3"), std::string::npos);
    double total = 0;
    for (const StoredRecord& record : records)
        total += score_of(record);
    EXPECT_NEAR(logged_total(resumed, "P018"), total, 0.01);
}

// A record the server did not take waits in the outbox beside the log. The next start sends it
// before the session goes on, so the session resumes after that level, and the server ends up
// with every level once.
TEST_F(ServerSessionEndToEndTest, ARecordTheServerDidNotTakeIsSentFromTheOutboxAtTheNextStart) {
    const fs::path study = folder.path() / "study";
    const fs::path outbox = folder.path() / "logs" / "outbox";
    fs::create_directories(study);
    {
        // Bodies of at most 64 bytes: the level list comes, the record is refused.
        testing::StudyServer refusing(study, "P020", {"max_body=64"});
        refusing.write_api_env("s3cret", folder.path());
        EXPECT_EQ(veldra("user_id=P020 config=three.json log_output_file=logs/refused.log"), 1);
        EXPECT_NE(errors().find("Failed to submit trial data."), std::string::npos) << errors();
        EXPECT_TRUE(refusing.stored().empty());
    }
    std::vector<fs::path> waiting;
    for (const auto& entry : fs::directory_iterator(outbox))
        waiting.push_back(entry.path());
    ASSERT_EQ(waiting.size(), 1u);
    EXPECT_NE(text_of(waiting[0]).find(R"("filename":"one.txt")"), std::string::npos);

    testing::StudyServer taking(study, "P020");
    taking.write_api_env("s3cret", folder.path());
    ASSERT_EQ(veldra("user_id=P020 config=three.json log_output_file=logs/resumed.log"), 0)
        << errors();
    const std::string resumed = log("resumed.log");
    EXPECT_NE(resumed.find("Sent 1 trial results of \"P020\" that were waiting in the outbox."),
              std::string::npos)
        << resumed;
    EXPECT_EQ(resumed.find("level 1 of 3"), std::string::npos);
    const std::vector<StoredRecord> records = taking.stored();
    ASSERT_EQ(records.size(), 3u);
    EXPECT_EQ(records[0].at("level_info.filename"), "one.txt");
    EXPECT_EQ(records[1].at("level_info.filename"), "two.txt");
    EXPECT_EQ(records[2].at("level_info.filename"), "three.txt");
    EXPECT_TRUE(fs::is_empty(outbox));

    // Nothing waits any more: a third start sends nothing and stores nothing twice.
    ASSERT_EQ(veldra("user_id=P020 config=three.json log_output_file=logs/third.log"), 0);
    EXPECT_EQ(log("third.log").find("Sent "), std::string::npos);
    EXPECT_EQ(taking.stored().size(), 3u);
}

TEST_F(ServerSessionEndToEndTest, SubmitOutboxSendsWhatWaitsAndFailsWhileSomethingStillWaits) {
    const fs::path study = folder.path() / "study";
    fs::create_directories(study);
    {
        testing::StudyServer refusing(study, "P021", {"max_body=64"});
        refusing.write_api_env("s3cret", folder.path());
        EXPECT_EQ(veldra("user_id=P021 config=three.json log_output_file=logs/refused.log"), 1);
        EXPECT_EQ(veldra("submit_outbox=1 log_output_file=logs/still.log"), 1);
        EXPECT_NE(log("still.log").find("; 1 still waiting."), std::string::npos);
    }
    testing::StudyServer taking(study, "P021");
    taking.write_api_env("s3cret", folder.path());
    EXPECT_EQ(veldra("submit_outbox=1 log_output_file=logs/sent.log"), 0) << errors();
    EXPECT_NE(log("sent.log").find("Sent 1 trial results from"), std::string::npos);
    EXPECT_NE(log("sent.log").find("; 0 still waiting."), std::string::npos);
    EXPECT_EQ(taking.stored().size(), 1u);
    EXPECT_EQ(veldra("submit_outbox=yes"), 2);
}

TEST_F(ServerSessionEndToEndTest, AnUnknownUserOrAWrongPasswordStartsNoSession) {
    EXPECT_EQ(veldra("user_id=NOBODY config=three.json log_output_file=logs/unknown.log"), 1);
    EXPECT_NE(errors().find("User ID NOBODY is not registered."), std::string::npos) << errors();
    EXPECT_EQ(log("unknown.log").find("Server session started"), std::string::npos);

    server.write_api_env("wrong");
    EXPECT_EQ(veldra("user_id=P019 config=three.json log_output_file=logs/wrong.log"), 1);
    EXPECT_NE(errors().find("Failed to connect to the server."), std::string::npos) << errors();
    EXPECT_NE(errors().find("HTTP error: 401"), std::string::npos) << errors();
    EXPECT_NE(errors().find("Failed to get data from the server."), std::string::npos);
    EXPECT_TRUE(server.stored().empty());
}

TEST_F(ServerSessionEndToEndTest, WithoutAServerConfiguredTheProgramSaysHowToConfigureOne) {
    fs::remove(folder.path() / ".api_env.json");
    EXPECT_EQ(veldra("user_id=P017 config=three.json log_output_file=logs/none.log"), 2);
    EXPECT_NE(errors().find("No research server is configured"), std::string::npos) << errors();
    EXPECT_NE(errors().find("\".api_env.json\""), std::string::npos);
    EXPECT_EQ(errors().find("Failed to connect"), std::string::npos);
}

// The game verifies the server's certificate: a self-signed one is refused, and accepted once
// ca_file names it.
TEST_F(ServerSessionEndToEndTest, AnHttpsServerIsTrustedOnlyThroughTheNamedCertificate) {
    const std::string made = "cd '" + folder.path().string() +
                             "' && openssl req -x509 -newkey rsa:2048 -nodes -keyout key.pem -out "
                             "cert.pem -days 1 -subj /CN=127.0.0.1 -addext "
                             "subjectAltName=IP:127.0.0.1 >/dev/null 2>&1";
    if (std::system(made.c_str()) != 0)
        GTEST_SKIP() << "the openssl command cannot make a certificate here";
    const std::string db = (folder.path() / "tls.sqlite").string();
    ServerProcess tls(
        {"db=" + db, "credentials=" + (folder.path() / "server_credentials.json").string(),
         "port=0", "rate_limit=0", "user_ids=P017", "cert=" + (folder.path() / "cert.pem").string(),
         "key=" + (folder.path() / "key.pem").string()});
    const std::optional<std::string> line = tls.read_line();
    ASSERT_TRUE(line);
    const std::size_t at = line->find("https://127.0.0.1:");
    ASSERT_NE(at, std::string::npos) << *line;
    const std::string url = "https://127.0.0.1:" + std::to_string(std::stoi(line->substr(at + 18)));
    write_config("one.json", R"(["one.txt"])");

    write_api_env_for(url, "s3cret", "");
    EXPECT_EQ(veldra("user_id=P017 config=one.json log_output_file=logs/untrusted.log"), 1);
    EXPECT_NE(errors().find("Failed to connect to the server."), std::string::npos) << errors();
    EXPECT_NE(errors().find("certificate"), std::string::npos) << errors();
    EXPECT_TRUE(server.stored(db).empty());

    write_api_env_for(url, "s3cret", "cert.pem");
    ASSERT_EQ(veldra("user_id=P017 config=one.json log_output_file=logs/trusted.log"), 0)
        << errors();
    const std::vector<StoredRecord> records = server.stored(db);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].at("level_info.filename"), "one.txt");
}

}  // namespace
}  // namespace veldra
