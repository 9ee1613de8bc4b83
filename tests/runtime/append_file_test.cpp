#include "runtime/append_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

#include "runtime/file_io.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

namespace fs = std::filesystem;

// The whole file, or "" when it cannot be read.
std::string contents(const fs::path& path) {
    return read_whole_file(path.string(), 1 << 20).text.value_or("");
}

TEST(AppendFile, AppendsPieceAfterPieceAndNeverTakesAFileThatIsThere) {
    testing::ScratchDirectory folder{"append_file"};
    const std::string path = (folder.path() / "a.csv").string();
    std::string error;
    auto file = AppendFile::create_new(path, error);
    ASSERT_TRUE(file) << error;
    EXPECT_EQ(file->append("head\n"), "");
    EXPECT_EQ(file->append("one\n"), "");
    EXPECT_EQ(contents(path), "head\none\n");

    // Whoever made it, an existing file is refused and left as it is.
    EXPECT_FALSE(AppendFile::create_new(path, error));
    EXPECT_NE(error.find("already there"), std::string::npos) << error;
    EXPECT_EQ(contents(path), "head\none\n");

    // A file moved along keeps its one owner.
    AppendFile moved = std::move(*file);
    EXPECT_EQ(moved.append("two\n"), "");
    EXPECT_EQ(moved.path(), path);
    EXPECT_EQ(contents(path), "head\none\ntwo\n");
}

TEST(AppendFile, TakesTheNextFreeNameAndSaysWhyWhenTheFolderCannotBeWritten) {
    testing::ScratchDirectory folder{"append_file_names"};
    std::ofstream(folder.path() / "s-1.csv") << "someone else's";
    std::string error;
    auto second = AppendFile::create_with_free_name(folder.path(), "s-1", ".csv", error);
    auto third = AppendFile::create_with_free_name(folder.path(), "s-1", ".csv", error);
    ASSERT_TRUE(second && third) << error;
    EXPECT_EQ(fs::path(second->path()).filename(), "s-1-2.csv");
    EXPECT_EQ(fs::path(third->path()).filename(), "s-1-3.csv");
    EXPECT_EQ(contents(folder.path() / "s-1.csv"), "someone else's");

    EXPECT_FALSE(AppendFile::create_with_free_name(folder.path() / "missing", "s", ".csv", error));
    EXPECT_NE(error.find("No such file"), std::string::npos) << error;
    EXPECT_FALSE(fs::exists(folder.path() / "missing"));
}

// A disk that fills up in the middle of a piece: the piece is taken back whole, so the file
// still ends with the last whole piece. The file-size limit plays the full disk, in a child
// process so the limit does not reach the other tests.
TEST(AppendFile, AnAppendThatFailsHalfWayIsTakenBack) {
    testing::ScratchDirectory folder{"append_file_full"};
    const std::string path = (folder.path() / "full.csv").string();
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{100, 100};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        std::string error;
        auto file = AppendFile::create_new(path, error);
        const bool ok = file && file->append(std::string(60, 'a') + "\n").empty() &&
                        !file->append(std::string(60, 'b') + "\n").empty();
        ::_exit(ok ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(contents(path), std::string(60, 'a') + "\n");
}

}  // namespace
}  // namespace veldra
