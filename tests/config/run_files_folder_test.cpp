#include "config/run_files_folder.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/scoped_environment.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

TEST(RunFilesFolderTest, BesideTheLogElseTheWorkingFolderElseTheUsersOwn) {
    testing::ScratchDirectory scratch{"run_files_folder"};
    const auto user = scratch.path() / "user" / "veldra";
    const auto log_file = (scratch.path() / "run.log").string();
    // A log file decides, whatever the working folder.
    EXPECT_EQ(choose_run_files_folder(log_file, scratch.path() / "missing", user), scratch.path());
    // No log: the working folder when a file can be made there, and the probe leaves nothing.
    EXPECT_EQ(choose_run_files_folder(std::nullopt, scratch.path(), user), std::filesystem::path());
    for (const auto& entry : std::filesystem::directory_iterator(scratch.path()))
        EXPECT_EQ(entry.path().filename().string().find(".veldra-write-check"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(user));
    // A working folder that cannot be written (here: one that is a file): the user's folder,
    // made on the way; a log sent to a device counts as no log.
    const auto not_a_folder = scratch.path() / "plain";
    std::ofstream(not_a_folder) << "x";
    EXPECT_EQ(choose_run_files_folder(std::nullopt, not_a_folder, user), user);
    EXPECT_EQ(choose_run_files_folder("run.log", not_a_folder, user), std::filesystem::path());
    EXPECT_TRUE(std::filesystem::is_directory(user));
#ifndef _WIN32  // no /dev there
    EXPECT_EQ(choose_run_files_folder("/dev/null", not_a_folder, user), user);
#endif
    // With no user folder known, the working folder stays the answer, and making a file there
    // fails later with its path.
    EXPECT_EQ(choose_run_files_folder(std::nullopt, not_a_folder, {}), std::filesystem::path());
}

#ifndef _WIN32  // Windows takes %APPDATA%, read wide
TEST(RunFilesFolderTest, TheUsersFolderFollowsTheEnvironment) {
    {
        testing::ScopedEnvironment data_home("XDG_DATA_HOME", "/data/home");
        EXPECT_EQ(user_data_folder(), std::filesystem::path("/data/home/veldra"));
    }
    testing::ScopedEnvironment data_home("XDG_DATA_HOME", "");
    testing::ScopedEnvironment home("HOME", "/home/jürgen");
    EXPECT_EQ(user_data_folder(), std::filesystem::path("/home/jürgen/.local/share/veldra"));
}
#endif

}  // namespace
}  // namespace veldra
