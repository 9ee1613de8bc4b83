// A whole local session in a real window, driven by a UI script as a participant would play it:
// the developer menu, the traits menus, two trials, the result menus, the end menu and its save
// dialog. The saved CSV is then checked line by line against trials run on their own.
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "platform/window_test_support.h"
#include "runtime/number_format.h"
#include "serial/json.h"
#include "support/file_text.h"
#include "trials/trial_data.h"

namespace veldra {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> split(const std::string& line, char separator) {
    std::vector<std::string> cells;
    std::stringstream stream(line);
    std::string cell;
    while (std::getline(stream, cell, separator))
        cells.push_back(cell);
    return cells;
}

using testing::lines_of;

// The log lines that say what a session's chain did, in order, with what chance decides taken
// out: seeds, scores, instance ids, time stamps (and the number that keeps two autosaves of one
// second apart), and what the creatures did. The trait tables
// (lines without a time stamp) and the UI script's own lines go too.
std::vector<std::string> chain_events(const fs::path& log) {
    static const std::regex stamped(R"(^\d{4}(_\d\d){5} (.*)$)");
    static const std::regex creature_event(R"(TICK#\d+ (Monster|Human|Player|Food)\()");
    static const std::vector<std::pair<std::regex, std::string>> chance = {
        {std::regex(R"(\(\d+\))"), "()"},
        {std::regex(R"(Seed: \d+)"), "Seed: S"},
        {std::regex(R"(score (of )?-?\d+(\.\d+)?)"), "score N"},
        {std::regex(R"(\d{8}-\d{6}(-\d+)?)"), "STAMP"}};
    std::vector<std::string> events;
    for (const std::string& line : lines_of(log)) {
        std::smatch match;
        if (!std::regex_match(line, match, stamped))
            continue;
        std::string event = match[2];
        if (std::regex_search(event, creature_event) || event.rfind("UI script:", 0) == 0)
            continue;
        for (const auto& [pattern, replacement] : chance)
            event = std::regex_replace(event, pattern, replacement);
        events.push_back(event);
    }
    return events;
}

class WindowedSessionTest : public ::testing::Test {
protected:
    void SetUp() override {
        VELDRA_NEED_DISPLAY();
        folder =
            fs::temp_directory_path() / ("veldra-windowed-session-" + std::to_string(::getpid()));
        fs::create_directories(folder);
        // Two small levels with a monster, food and another human, so the results say something.
        std::ofstream(folder / "one.txt") << "xxxxxxx\nx p  hx\nx  f  x\nxm    x\nxxxxxxx\n";
        std::ofstream(folder / "two.txt") << "xxxxxxxx\nxh    px\nx ff   x\nx   m  x\nxxxxxxxx\n";
        std::ofstream(folder / "study.json")
            << R"({ "trial_time": 3, "game_speed": 4, "levels": ["one.txt", "two.txt"] })";
    }
    void TearDown() override {
        std::error_code ec;
        fs::remove_all(folder, ec);
    }

    int veldra(const std::string& arguments, const std::string& output = "out.txt") {
        const std::string command = "cd '" + folder.string() + "' && SDL_AUDIODRIVER=dummy '" +
                                    fs::absolute("veldra").string() + "' " + arguments + " >" +
                                    output + " 2>>err.txt";
        return std::system(command.c_str());
    }
    // What the program said: its error output and the last lines of its log, which name the
    // UI-script line it stopped on.
    std::string errors() const {
        std::ifstream file(folder / "err.txt");
        std::stringstream text;
        text << "error output:\n" << file.rdbuf();
        const std::vector<std::string> log = lines_of(folder / "run.log");
        text << "\nlast lines of run.log:\n";
        for (std::size_t i = log.size() > 25 ? log.size() - 25 : 0; i < log.size(); ++i)
            text << log[i] << "\n";
        return text.str();
    }

    fs::path folder;
};

TEST_F(WindowedSessionTest, ALocalSessionOfTwoLevelsEndsInASavedCsvOfItsTrials) {
    const fs::path saved = folder / "results.csv";
    // The first level's traits are typed (into a box, then from slider to box with Tab), the
    // second's set with the sliders.
    std::ofstream(folder / "session.ui") << "wait DEVELOPER MENU\n"
                                            "click Start session (local)\n"
                                            "wait START SESSION (LOCAL)\n"
                                            "click Continue\n"
                                            "wait Level 1/2: choose your personality\n"
                                            "box Openness\n"
                                            "type 0.4\n"
                                            "key tab\n"
                                            "type -0.6\n"
                                            "key tab\n"
                                            "key tab\n"
                                            "type 0.8\n"
                                            "key tab\n"
                                            "key tab\n"
                                            "type -1\n"
                                            "key tab\n"
                                            "key tab\n"
                                            "type 0.25\n"
                                            "key tab\n"
                                            "click Start\n"
                                            "wait Level 1/2 done\n"
                                            "click Continue\n"
                                            "wait Level 2/2: choose your personality\n"
                                            "slide 0.3 Openness\n"
                                            "slide -0.7 Conscientiousness\n"
                                            "slide 1 Extraversion\n"
                                            "slide -0.2 Agreeableness\n"
                                            "slide 0.6 Neuroticism\n"
                                            "click Start\n"
                                            "wait Level 2/2 done\n"
                                            "click Continue\n"
                                            "wait All levels done\n"
                                            "click Save results\n"
                                            "wait File name\n"
                                            "type " +
                                                saved.string() +
                                                "\n"
                                                "frames 5\n"
                                                "key enter\n"
                                                "frames 20\n"
                                                "quit\n";
    ASSERT_EQ(veldra("lang=en config=study.json ui_script=session.ui frames=3000 "
                     "log_output_file=run.log"),
              0)
        << errors();

    const std::vector<std::string> lines = lines_of(saved);
    ASSERT_EQ(lines.size(), 3u) << errors();
    EXPECT_EQ(lines[0] + "\n", trial_data_as_csv_headers());
    const std::vector<std::string> names = split(lines[0], ';');
    const char* levels[] = {"one.txt", "two.txt"};
    const char* chosen[][5] = {{"0.4", "-0.6", "0.8", "-1", "0.25"},
                               {"0.3", "-0.7", "1", "-0.2", "0.6"}};
    for (std::size_t i = 1; i < lines.size(); ++i) {
        std::map<std::string, std::string> cell;
        const std::vector<std::string> cells = split(lines[i], ';');
        ASSERT_EQ(cells.size(), names.size()) << lines[i];
        for (std::size_t c = 0; c < names.size(); ++c)
            cell[names[c]] = cells[c];
        EXPECT_EQ(cell["user_id"], "LOCAL_USER");
        EXPECT_EQ(cell["level_info.filename"], levels[i - 1]);
        EXPECT_EQ(cell["level_info.play_order"], std::to_string(i - 1));
        EXPECT_EQ(cell["level_info.num_monsters"], "1");
        // Nobody steered, so the trial is the automatic one of the same seed and traits.
        const char* trait_names[] = {"openness", "conscientiousness", "extraversion",
                                     "agreeableness", "neuroticism"};
        for (int t = 0; t < 5; ++t)
            EXPECT_EQ(cell[std::string("traits.") + trait_names[t]], chosen[i - 1][t])
                << trait_names[t] << " of " << levels[i - 1];
        const std::string traits = cell["traits.openness"] + "," +
                                   cell["traits.conscientiousness"] + "," +
                                   cell["traits.extraversion"] + "," +
                                   cell["traits.agreeableness"] + "," + cell["traits.neuroticism"];
        ASSERT_EQ(veldra("headless=1 config=study.json trial_level=" + cell["level_info.filename"] +
                             " seed=" + cell["seed"] + " traits=" + traits,
                         "alone.json"),
                  0)
            << errors();
        std::ifstream alone(folder / "alone.json");
        std::stringstream json;
        json << alone.rdbuf();
        const std::string one_line = json.str().substr(0, json.str().find('\n'));
        const auto parsed = json_parse(one_line);
        ASSERT_TRUE(parsed) << one_line;
        const Value& result = *parsed;
        EXPECT_EQ(cell["result.type"], result.get("type").as_string());
        // A CSV cell holds at most two decimals and the JSON line every digit, so the second
        // is compared as the CSV writes it: energy is fractional after an exchange.
        for (const char* field : {"time_left", "num_monsters_remaining", "num_food_remaining",
                                  "num_humans_remaining", "energy_remaining", "trial_score"})
            EXPECT_EQ(cell[std::string("result.") + field],
                      number_to_string(result.get(field).as_number()))
                << field << " of " << levels[i - 1];
    }
    // The autosave beside the log holds the same lines.
    std::vector<fs::path> autosaves;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().filename().string().rfind("session-LOCAL_USER-", 0) == 0)
            autosaves.push_back(entry.path());
    ASSERT_EQ(autosaves.size(), 1u) << errors();
    EXPECT_EQ(lines_of(autosaves[0]), lines);
}

TEST_F(WindowedSessionTest, ClosingTheWindowMidSessionAsksFirstAndKeepsTheFinishedTrials) {
    std::ofstream(folder / "leave.ui") << "wait Level 1/2: choose your personality\n"
                                          "click Start\n"
                                          "wait Level 1/2 done\n"
                                          "quit\n"
                                          "wait Leave the session?\n"
                                          "click Keep playing\n"
                                          "wait Level 1/2 done\n"
                                          "click Continue\n"
                                          "wait Level 2/2: choose your personality\n"
                                          "click Start\n"
                                          "frames 10\n"
                                          "quit\n"
                                          "wait Leave the session?\n"
                                          "frames 200\n"
                                          "key enter\n"
                                          "frames 10\n"
                                          "quit\n"
                                          "wait Leave the session?\n"
                                          "click Quit\n"
                                          "frames 600\n";
    ASSERT_EQ(veldra("lang=en config=study.json demo=1 ui_script=leave.ui frames=3000 "
                     "log_output_file=run.log"),
              0)
        << errors();
    std::vector<fs::path> autosaves;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().filename().string().rfind("session-DEMO_USER-", 0) == 0)
            autosaves.push_back(entry.path());
    ASSERT_EQ(autosaves.size(), 1u) << errors();
    const std::vector<std::string> lines = lines_of(autosaves[0]);
    ASSERT_EQ(lines.size(), 2u) << errors();  // the header and the one trial finished
    EXPECT_NE(lines[1].find(";one.txt;"), std::string::npos) << lines[1];
    EXPECT_NE(lines[1].find(";DEMO_USER"), std::string::npos) << lines[1];
    // The second trial, a few dozen frames long, stood still through the 200 frames of the
    // question, and Enter kept playing: it was still running when the participant left.
    const std::string said = errors();
    const std::size_t kept = said.find("The participant keeps playing");
    ASSERT_NE(kept, std::string::npos) << said;
    EXPECT_EQ(said.find("Trial ended.", said.find("Level: two")), std::string::npos) << said;
}

// A headless session and one played in a window run the same chain: every step of it happens in
// the same order, so what the fast headless tests see is what a participant's window does. The
// language is given: a debug build would ask it in the window, and the script does not answer.
TEST_F(WindowedSessionTest, AHeadlessSessionRunsItsChainInTheOrderAWindowedOneDoes) {
    ASSERT_EQ(veldra("lang=en headless=1 demo=1 config=study.json log_output_file=headless.log"), 0)
        << errors();
    std::ofstream(folder / "order.ui") << "wait Level 1/2: choose your personality\n"
                                          "click Start\n"
                                          "wait Level 1/2 done\n"
                                          "click Continue\n"
                                          "wait Level 2/2: choose your personality\n"
                                          "click Start\n"
                                          "wait Level 2/2 done\n"
                                          "click Continue\n"
                                          "wait All levels done\n"
                                          "quit\n";
    ASSERT_EQ(veldra("lang=en demo=1 config=study.json ui_script=order.ui frames=3000 "
                     "log_output_file=run.log"),
              0)
        << errors();
    const std::vector<std::string> headless = chain_events(folder / "headless.log");
    const std::vector<std::string> windowed = chain_events(folder / "run.log");
    // The chain from start-up to the end: not a comparison of two empty lists.
    ASSERT_GT(headless.size(), 20u);
    EXPECT_NE(
        std::find(headless.begin(), headless.end(), "Local session finished with a total score N."),
        headless.end());
    EXPECT_EQ(windowed, headless);
}

// A script that cannot finish fails the run and says where it stood, so a failed windowed test
// explains itself.
TEST_F(WindowedSessionTest, AScriptStillWaitingWhenTheFramesRunOutFailsNamingItsLine) {
    std::ofstream(folder / "stuck.ui") << "# the developer menu comes first\n"
                                          "wait DEVELOPER MENU\n"
                                          "wait A menu that never comes\n"
                                          "click Start\n";
    EXPECT_NE(veldra("lang=en config=study.json ui_script=stuck.ui frames=40 "
                     "log_output_file=run.log"),
              0);
    const std::string said = errors();
    EXPECT_NE(said.find("line 3 (wait A menu that never comes)"), std::string::npos) << said;
    EXPECT_NE(said.find("1 command after it did not run"), std::string::npos) << said;
}

}  // namespace
}  // namespace veldra
