// The terminal's scrollback, the Terminal it installs in the services, and its command line's
// history and completion: the parts that do not draw.

#include "devtools/terminal_log.h"

#include <gtest/gtest.h>

#include "devtools/command_line.h"
#include "devtools/terminal_tap.h"
#include "runtime/services.h"

namespace veldra {
namespace {

TEST(TerminalLog, KeepsLinesWithTheirLevelAndDropsTheOldestBeyondTheBound) {
    TerminalLog log(3);
    log.add(LogLevel::info, "one");
    log.add(LogLevel::warning, "[#dddd55]Warning:[/c] two");
    log.add(LogLevel::error, "three\nfour");  // two rows
    ASSERT_EQ(log.lines().size(), 3u);
    EXPECT_EQ(log.lines()[0].text, "[#dddd55]Warning:[/c] two");
    EXPECT_EQ(log.lines()[0].level, LogLevel::warning);
    EXPECT_EQ(log.lines()[1].text, "three");
    EXPECT_EQ(log.lines()[2].text, "four");
    EXPECT_EQ(log.lines()[2].level, LogLevel::error);
    EXPECT_EQ(log.added(), 4u) << "counts the dropped line too";

    TerminalLog full;
    for (int i = 0; i < 2500; ++i)
        full.add(LogLevel::info, std::to_string(i));
    ASSERT_EQ(full.lines().size(), TERMINAL_SCROLLBACK);
    EXPECT_EQ(full.lines().front().text, "500");
    EXPECT_EQ(full.lines().back().text, "2499");
}

TEST(TerminalLog, FiltersByLevel) {
    TerminalLog log;
    log.add(LogLevel::info, "a");
    log.add(LogLevel::warning, "b");
    log.add(LogLevel::error, "c");
    log.add(LogLevel::error, "d");
    EXPECT_EQ(log.shown_count(), 4u);
    log.set_shows(LogLevel::error, false);
    EXPECT_EQ(log.shown_count(), 2u);
    log.set_shows(LogLevel::info, false);
    EXPECT_EQ(log.shown_count(), 1u);
    EXPECT_FALSE(log.shows(LogLevel::info));
    EXPECT_TRUE(log.shows(LogLevel::warning));
    log.set_shows(LogLevel::error, true);
    EXPECT_EQ(log.shown_count(), 3u);
}

class RecordingTerminal final : public Terminal {
public:
    explicit RecordingTerminal(std::vector<std::string>& lines) : lines_(lines) {}
    void println(LogLevel, std::string_view line) override {
        lines_.emplace_back(line);
        saw_verbose = verbose;
    }
    bool saw_verbose = false;

private:
    std::vector<std::string>& lines_;
};

TEST(TerminalTap, KeepsEveryLineAndHandsItOnThenPutsTheOldTerminalBack) {
    Services services;
    std::vector<std::string> forwarded;
    services.terminal = std::make_unique<RecordingTerminal>(forwarded);
    Terminal* old = services.terminal.get();
    old->verbose = true;
    TerminalTap& tap = TerminalTap::install(services);
    EXPECT_EQ(services.terminal.get(), &tap);
    EXPECT_TRUE(tap.verbose) << "the verbosity the old one had";
    services.terminal->println(LogLevel::warning, "[b]careful[/b]");
    EXPECT_EQ(forwarded, std::vector<std::string>{"[b]careful[/b]"});
    ASSERT_EQ(tap.log.lines().size(), 1u);
    EXPECT_EQ(tap.log.lines()[0].level, LogLevel::warning);
    TerminalTap::uninstall(services, tap);
    EXPECT_EQ(services.terminal.get(), old);
    EXPECT_TRUE(static_cast<RecordingTerminal*>(old)->saw_verbose);
}

TEST(CommandHistory, UpWalksBackFromTheNewestAndDownReturnsToAnEmptyLine) {
    CommandHistory history;
    EXPECT_EQ(history.older(), std::nullopt);
    history.add("pause");
    history.add("step 5");
    history.add("step 5");  // a repeat is kept once
    history.add("  ");      // so is nothing
    EXPECT_EQ(history.lines().size(), 2u);
    EXPECT_EQ(history.older(), "step 5");
    EXPECT_EQ(history.older(), "pause");
    EXPECT_EQ(history.older(), std::nullopt) << "nothing older than the oldest";
    EXPECT_EQ(history.newer(), "step 5");
    EXPECT_EQ(history.newer(), "");
    EXPECT_EQ(history.newer(), std::nullopt);
    // Entering a line starts the walk again from the newest.
    history.older();
    history.older();
    history.add("resume");
    EXPECT_EQ(history.older(), "resume");
}

TEST(CommandCompletion, CompletesAUniqueNameAndListsSeveralAsFarAsTheyAgree) {
    const std::vector<std::string> names{"help", "speed", "step", "step_decision", "spawn"};
    struct Case {
        std::string line;
        std::string completed;
        std::vector<std::string> candidates;
    };
    const Case cases[] = {
        {"he", "help ", {"help"}},
        {"sp", "sp", {"speed", "spawn"}},
        {"st", "step", {"step", "step_decision"}},
        {"step_", "step_decision ", {"step_decision"}},
        {"  he", "  help ", {"help"}},
        {"xyz", "xyz", {}},
        {"", "", {}},
        {"step 5", "step 5", {}},  // arguments are not completed
    };
    for (const Case& c : cases) {
        const Completion completion = complete_command_name(c.line, names);
        EXPECT_EQ(completion.line, c.completed) << c.line;
        EXPECT_EQ(completion.candidates, c.candidates) << c.line;
    }
}

}  // namespace
}  // namespace veldra
