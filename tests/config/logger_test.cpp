#include "config/logger.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "config/program_parameters.h"
#include "runtime/gc.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

std::string read_file(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

class CollectingTerminal final : public Terminal {
public:
    void println(LogLevel, std::string_view line) override { lines.emplace_back(line); }
    std::vector<std::string> lines;
};

class LoggerTest : public ::testing::Test {
protected:
    LoggerTest() {
        auto clock = std::make_unique<ManualClock>();
        services.clock = std::move(clock);
        auto terminal_owned = std::make_unique<CollectingTerminal>();
        terminal = terminal_owned.get();
        services.terminal = std::move(terminal_owned);
    }
    GcScope collector;
    Services services;
    Runtime runtime{services};
    LoggerState logger;
    CollectingTerminal* terminal = nullptr;
    testing::ScratchDirectory scratch{"veldra_logger_test"};
    std::string path = (scratch.path() / "log.txt").string();
};

TEST(LogTimestamp, PadsEveryPartButTheYear) {
    EXPECT_EQ(make_log_timestamp({2024, 3, 7, 9, 5, 41}), "2024_03_07_09_05_41");
    EXPECT_EQ(make_log_timestamp({999, 12, 31, 23, 59, 0}), "999_12_31_23_59_00");
}

TEST_F(LoggerTest, TerminalKeepsMarkupAndFileGetsPlainLinesInBatches) {
    initialize_log(runtime, logger, path);
    log("hello");
    log_warning("careful");
    log_error("[#ff0000]broken[/c]");
    ASSERT_EQ(terminal->lines.size(), 3u);
    EXPECT_EQ(terminal->lines[0], "2024_03_07_09_05_41 hello");
    EXPECT_EQ(terminal->lines[1], "2024_03_07_09_05_41 [#dddd55]Warning:[/c] careful");
    EXPECT_EQ(terminal->lines[2], "2024_03_07_09_05_41 [#dd5555]Error:[/c] [#ff0000]broken[/c]");

    for (int i = 0; i < LOG_DUMP_INTERVAL_STEPS - 1; ++i)
        runtime.run_frame();
    EXPECT_EQ(read_file(path), "");  // not yet: one write-out per 60 steps
    runtime.run_frame();
    EXPECT_EQ(read_file(path),
              "2024_03_07_09_05_41 hello\n2024_03_07_09_05_41 Warning: "
              "careful\n2024_03_07_09_05_41 Error: broken\n");

    log("last words");
    runtime.shutdown();  // the clean-up event writes what is left
    EXPECT_NE(read_file(path).find("last words\n"), std::string::npos);
}

TEST_F(LoggerTest, WithoutOutputFileNoFileIsMadeAndScreamingShowsMessages) {
    initialize_log(runtime, logger, std::nullopt);
    logger.scream_log_errors = true;
    log_error("[#dd5555]bad[/c]");
    log("calm");
    auto& dialogs = static_cast<ScriptedDialogs&>(*services.dialogs);
    ASSERT_EQ(dialogs.messages_shown.size(), 1u);
    EXPECT_EQ(dialogs.messages_shown[0], "2024_03_07_09_05_41 Error: bad");
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(LoggerTest, UnwritableFileIsReportedOnceAndLeavesTheTerminalWorking) {
    ::testing::internal::CaptureStderr();
    initialize_log(runtime, logger, "/nonexistent-dir/x.log");
    log("still here");
    runtime.shutdown();
    const std::string said = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(terminal->lines.back(), "2024_03_07_09_05_41 still here");
    EXPECT_NE(said.find("/nonexistent-dir/x.log: No such file or directory"), std::string::npos)
        << said;
}

// A file that opens but takes nothing (a full disk): said once, with the reason, not lost
// without a word.
TEST_F(LoggerTest, AFileThatCannotBeWrittenIsReportedOnce) {
    ::testing::internal::CaptureStderr();
    initialize_log(runtime, logger, "/dev/full");
    for (int batch = 0; batch < 3; ++batch) {
        log("line " + std::to_string(batch));
        for (int i = 0; i < LOG_DUMP_INTERVAL_STEPS; ++i)
            runtime.run_frame();
    }
    runtime.shutdown();
    const std::string said = ::testing::internal::GetCapturedStderr();
    const std::string report = "log_output_file=/dev/full: No space left on device";
    ASSERT_NE(said.find(report), std::string::npos) << said;
    EXPECT_EQ(said.find(report, said.find(report) + 1), std::string::npos) << said;
}

// The run's own files go beside a log that is a plain file, never into /dev beside a device.
TEST(FolderBesideLog, IsTheLogsFolderOnlyForAPlainFile) {
    testing::ScratchDirectory scratch{"folder_beside_log"};
    const auto log_file = scratch.path() / "run.log";
    EXPECT_EQ(folder_beside_log(std::nullopt), std::filesystem::path());
    EXPECT_EQ(folder_beside_log(log_file.string()), scratch.path());  // made later
    std::ofstream(log_file) << "x";
    EXPECT_EQ(folder_beside_log(log_file.string()), scratch.path());
    EXPECT_EQ(path_beside_log(log_file.string(), "a.csv"), (scratch.path() / "a.csv").string());
    EXPECT_EQ(folder_beside_log("/dev/full"), std::filesystem::path());
    EXPECT_EQ(folder_beside_log("/dev/null"), std::filesystem::path());
    EXPECT_EQ(path_beside_log("/dev/full", "a.csv"), "a.csv");
    EXPECT_EQ(folder_beside_log(scratch.path().string()), std::filesystem::path());  // a folder
}

TEST_F(LoggerTest, SecondInitializationIsReportedAndMakesNoSecondLogger) {
    initialize_log(runtime, logger, std::nullopt);
    initialize_log(runtime, logger, std::nullopt);
    EXPECT_EQ(runtime.instance_number<obj_logger>(), 1u);
    EXPECT_NE(terminal->lines.back().find("called more than once"), std::string::npos);
}

}  // namespace
}  // namespace veldra
