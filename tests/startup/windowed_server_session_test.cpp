// A server session in a real window, driven by a UI script as a participant would play it, the
// real veldra-server storing its records: the traits chosen for the first level come back preset
// for the second, and a participant who starts again after the last level sees the end menu at
// once.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <sstream>
#include <string>
#include <thread>

#include "platform/window_test_support.h"
#include "startup/study_server.h"
#include "support/file_text.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

namespace fs = std::filesystem;

class WindowedServerSessionTest : public ::testing::Test {
protected:
    void SetUp() override {
        VELDRA_NEED_DISPLAY();
        ASSERT_GT(server.port(), 0) << server.output();
        server.write_api_env("s3cret");
        std::ofstream(folder.path() / "one.txt") << "xxxxxxx\nx p  hx\nx  f  x\nxm    x\nxxxxxxx\n";
        std::ofstream(folder.path() / "two.txt")
            << "xxxxxxxx\nxh    px\nx ff   x\nx   m  x\nxxxxxxxx\n";
        std::ofstream(folder.path() / "study.json")
            << R"({ "trial_time": 3, "game_speed": 4, "shuffle_levels": false,
                    "show_trial_result_menu": true, "levels": ["one.txt", "two.txt"] })";
    }
    int veldra(const std::string& arguments) {
        const std::string command =
            "cd '" + folder.path().string() + "' && SDL_AUDIODRIVER=dummy '" +
            fs::absolute("veldra").string() + "' " + arguments + " >out.txt 2>err.txt";
        return std::system(command.c_str());
    }
    std::string errors() const { return testing::text_of(folder.path() / "err.txt"); }

    testing::ScratchDirectory folder{"veldra-windowed-server-session"};
    testing::StudyServer server{folder.path(), "P017"};
};

TEST_F(WindowedServerSessionTest, TwoLevelsArePlayedWithTheTraitsCarriedOverAndSubmitted) {
    std::ofstream(folder.path() / "session.ui") << "wait Level 1/2: choose your personality\n"
                                                   "slide 0.3 Openness\n"
                                                   "slide -0.7 Conscientiousness\n"
                                                   "slide 1 Extraversion\n"
                                                   "slide -0.2 Agreeableness\n"
                                                   "slide 0.6 Neuroticism\n"
                                                   "click Start\n"
                                                   "wait Level 1/2 done\n"
                                                   "click Continue\n"
                                                   "wait Level 2/2: choose your personality\n"
                                                   "click Start\n"
                                                   "wait Level 2/2 done\n"
                                                   "click Continue\n"
                                                   "wait All levels done\n"
                                                   "quit\n";
    ASSERT_EQ(veldra("lang=en user_id=P017 config=study.json ui_script=session.ui frames=3000 "
                     "log_output_file=run.log"),
              0)
        << errors();
    const auto records = server.stored();
    ASSERT_EQ(records.size(), 2u) << errors();
    const char* traits[] = {"openness", "conscientiousness", "extraversion", "agreeableness",
                            "neuroticism"};
    const char* chosen[] = {"0.3", "-0.7", "1", "-0.2", "0.6"};
    for (const auto& record : records) {
        EXPECT_EQ(record.at("user_id"), "P017");
        for (int t = 0; t < 5; ++t)
            EXPECT_EQ(record.at(std::string("traits.") + traits[t]), chosen[t])
                << traits[t] << " of " << record.at("level_info.filename");
    }
    EXPECT_EQ(records[0].at("level_info.filename"), "one.txt");
    EXPECT_EQ(records[1].at("level_info.filename"), "two.txt");

    // Everything is stored: the end menu comes without a trial, and nothing more is sent.
    std::ofstream(folder.path() / "again.ui") << "wait All levels done\nquit\n";
    ASSERT_EQ(veldra("lang=en user_id=P017 config=study.json ui_script=again.ui frames=3000 "
                     "log_output_file=again.log"),
              0)
        << errors();
    EXPECT_EQ(server.stored().size(), 2u);
}

// Closing the window in the middle asks first, as in a local session; leaving keeps what the
// server has, and the next start goes on with the level that was left.
TEST_F(WindowedServerSessionTest, ClosingTheWindowMidSessionAsksFirstAndTheNextStartGoesOn) {
    std::ofstream(folder.path() / "leave.ui") << "wait Level 1/2: choose your personality\n"
                                                 "click Start\n"
                                                 "wait Level 1/2 done\n"
                                                 "click Continue\n"
                                                 "wait Level 2/2: choose your personality\n"
                                                 "quit\n"
                                                 "wait Leave the session?\n"
                                                 "click Quit\n"
                                                 "frames 600\n";
    ASSERT_EQ(veldra("lang=en user_id=P017 config=study.json ui_script=leave.ui frames=3000 "
                     "log_output_file=leave.log"),
              0)
        << errors();
    ASSERT_EQ(server.stored().size(), 1u) << errors();

    std::ofstream(folder.path() / "back.ui") << "wait Level 2/2: choose your personality\n"
                                                "click Start\n"
                                                "wait Level 2/2 done\n"
                                                "click Continue\n"
                                                "wait All levels done\n"
                                                "quit\n";
    ASSERT_EQ(veldra("lang=en user_id=P017 config=study.json ui_script=back.ui frames=3000 "
                     "log_output_file=back.log"),
              0)
        << errors();
    const auto records = server.stored();
    ASSERT_EQ(records.size(), 2u) << errors();
    EXPECT_EQ(records[1].at("level_info.filename"), "two.txt");
    EXPECT_EQ(records[1].at("level_info.play_order"), "1");
}

// The server goes down while a participant chooses the traits of the first level: the record
// cannot be posted and waits in the outbox. Once the server is back, the next start sends it
// before the session goes on, and the server keeps it once.
TEST_F(WindowedServerSessionTest, ARecordPostedWhileTheServerIsDownArrivesFromTheOutboxOnce) {
    const fs::path held = folder.path() / "held.png";
    const fs::path go = folder.path() / "go";
    std::ofstream(folder.path() / "down.ui") << "wait Level 1/2: choose your personality\n"
                                                "screenshot held.png\n"
                                                "wait_file go\n"
                                                "click Start\n"
                                                "wait Failed to submit trial data.\n"
                                                "quit\n";
    std::future<int> game = std::async(std::launch::async, [this] {
        return veldra(
            "lang=en user_id=P017 config=study.json ui_script=down.ui frames=6000 "
            "log_output_file=down.log");
    });
    for (int i = 0; i < 6000 && !fs::exists(held); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_TRUE(fs::exists(held));
    EXPECT_EQ(server.stop(), 0);
    std::ofstream(go) << "";
    ASSERT_EQ(game.get(), 0) << errors();
    std::vector<fs::path> waiting;
    for (const auto& entry : fs::directory_iterator(folder.path() / "outbox"))
        waiting.push_back(entry.path());
    ASSERT_EQ(waiting.size(), 1u) << errors();

    testing::StudyServer back(folder.path(), "P017");
    back.write_api_env("s3cret");
    ASSERT_EQ(veldra("headless=1 user_id=P017 config=study.json log_output_file=back.log"), 0)
        << errors();
    const auto records = back.stored();
    ASSERT_EQ(records.size(), 2u) << errors();
    EXPECT_EQ(records[0].at("level_info.filename"), "one.txt");
    EXPECT_EQ(records[1].at("level_info.filename"), "two.txt");
    EXPECT_TRUE(fs::is_empty(folder.path() / "outbox"));
}

}  // namespace
}  // namespace veldra
