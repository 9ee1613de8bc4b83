#include "platform/interrupt.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <initializer_list>
#include <sstream>
#include <thread>

#include "runtime/file_io.h"
#include "startup/run_program.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

namespace fs = std::filesystem;

// The whole file, or "" when it cannot be read.
std::string contents(const fs::path& path) {
    return read_whole_file(path.string(), 1 << 20).text.value_or("");
}

std::size_t count_of(const std::string& text, const std::string& piece) {
    std::size_t count = 0;
    for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1))
        ++count;
    return count;
}

// A headless session of many levels, run by the program itself in a child process in its own
// folder, so that a signal sent to it reaches nothing else.
class InterruptedSession : public ::testing::Test {
protected:
    void start(bool sigint_ignored_by_parent) {
        std::ofstream(folder.path() / "many.json")
            << R"({ "trial_time": 3, "levels": [)" << level_list(200) << "] }";
        std::fflush(nullptr);
        child = ::fork();
        ASSERT_GE(child, 0);
        if (child != 0)
            return;
        // What a script's `veldra ... &` does: the job ignores Ctrl-C at the terminal.
        if (sigint_ignored_by_parent)
            std::signal(SIGINT, SIG_IGN);
        setenv("VeldraProjectDir", VELDRA_SOURCE_DIR, 1);
        if (::chdir(folder.path().c_str()) != 0)
            ::_exit(90);
        const int err = ::open("stderr.txt", O_WRONLY | O_CREAT | O_TRUNC, 0644);
        ::dup2(err, 2);
        const char* arguments[] = {"veldra",    "headless=1",
                                   "demo=1",    "config=many.json",
                                   "verbose=1", "log_output_file=run.log",
                                   nullptr};
        ::_exit(run_program(6, const_cast<char**>(arguments)));
    }

    static std::string level_list(int count) {
        std::string list;
        for (int i = 0; i < count; ++i)
            list += std::string(i ? ", " : "") + "\"levels/level_01.txt\"";
        return list;
    }

    // The session's autosave once it holds the header and at least one record.
    fs::path wait_for_first_record() {
        for (int tries = 0; tries < 6000; ++tries) {
            for (const auto& entry : fs::directory_iterator(folder.path()))
                if (entry.path().filename().string().starts_with("session-") &&
                    count_of(contents(entry.path()), "\n") >= 2)
                    return entry.path();
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        ADD_FAILURE() << "no record after a minute:\n" << contents(folder.path() / "stderr.txt");
        return {};
    }

    int wait_for_exit_status() {
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        child = -1;
        EXPECT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    // Every line whole (the header's 33 columns), one per saved trial as the log counts them.
    void expect_every_saved_trial_once(const fs::path& autosave) {
        const std::string csv = contents(autosave);
        ASSERT_FALSE(csv.empty());
        EXPECT_EQ(csv.back(), '\n');
        std::istringstream lines(csv);
        std::size_t records = 0;
        for (std::string line; std::getline(lines, line); ++records)
            EXPECT_EQ(count_of(line, ";"), 32u) << line;
        const std::string log = contents(folder.path() / "run.log");
        EXPECT_EQ(records - 1, count_of(log, "Saved the result of level"));
        EXPECT_GE(records, 2u);
        EXPECT_LT(records - 1, 200u);  // stopped in the middle
        for (const auto& entry : fs::directory_iterator(folder.path()))
            EXPECT_NE(entry.path().extension(), ".writing") << entry.path();
    }

    // Sends `signals` once the session has saved a trial; checks the exit and the autosave, and
    // returns the log.
    std::string stop_midway(bool sigint_ignored_by_parent, std::initializer_list<int> signals) {
        start(sigint_ignored_by_parent);
        const fs::path autosave = wait_for_first_record();
        if (autosave.empty())
            return {};
        for (int signal_number : signals)
            ::kill(child, signal_number);
        EXPECT_EQ(wait_for_exit_status(), EXIT_INTERRUPTED);
        expect_every_saved_trial_once(autosave);
        return contents(folder.path() / "run.log");
    }

    void TearDown() override {
        if (child > 0) {
            ::kill(child, SIGKILL);
            ::waitpid(child, nullptr, 0);
        }
    }

    testing::ScratchDirectory folder{"interrupted_session"};
    pid_t child = -1;
};

TEST_F(InterruptedSession, SigtermEndsItWithEveryFinishedTrialOnDisk) {
    const std::string log = stop_midway(false, {SIGTERM});
    EXPECT_NE(log.find("Stopped by SIGTERM."), std::string::npos) << log;
    EXPECT_NE(log.find("finished trials are in \"session-DEMO_USER-"), std::string::npos) << log;
}

TEST_F(InterruptedSession, CtrlCEndsItToo) {
    const std::string log = stop_midway(false, {SIGINT});
    EXPECT_NE(log.find("Stopped by SIGINT (Ctrl-C)."), std::string::npos) << log;
}

// A background job of a script keeps ignoring Ctrl-C, as its parent asked; SIGTERM still stops
// it. The first signal that is caught names itself in the log.
TEST_F(InterruptedSession, ASigintTheParentIgnoresStaysIgnored) {
    const std::string log = stop_midway(true, {SIGINT, SIGTERM});
    EXPECT_NE(log.find("Stopped by SIGTERM."), std::string::npos) << log;
}

}  // namespace
}  // namespace veldra
