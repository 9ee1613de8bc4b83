// The file calls with names outside ASCII and the reasons they give, on every system: Windows
// takes such names only through its wide calls, so a conversion missed there shows up here
// as a wrongly named file or one that cannot be found again.
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "runtime/append_file.h"
#include "runtime/file_io.h"
#include "runtime/files.h"
#include "runtime/paths.h"
#include "runtime/utf8_path.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

namespace fs = std::filesystem;

class UnicodePaths : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(fs::create_directory(utf8_path(folder_))); }

    testing::ScratchDirectory scratch_{"unicode_paths"};
    const std::string folder_ = path_utf8(scratch_.path() / "J\xC3\xBCrgen");
};

TEST_F(UnicodePaths, WholeFilesAreWrittenUnderTheirOwnNameAndReadBack) {
    const std::string name =
        "Gr\xC3\xBC\xC3\x9F"
        "e-\xE6\x97\xA5.csv";
    const std::string path = folder_ + "/" + name;
    ASSERT_EQ(write_whole_file(path, "first\n"), "");
    ASSERT_EQ(write_whole_file(path, "second\n"), "");  // replaces, through a temporary file
    EXPECT_EQ(read_whole_file(path, 1024).text.value_or("unreadable"), "second\n");

    // The system holds exactly that one name: no temporary left, no name in another code page.
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(utf8_path(folder_)))
        names.push_back(path_utf8(entry.path().filename()));
    EXPECT_EQ(names, std::vector<std::string>{name});
}

TEST_F(UnicodePaths, FailuresGiveTheReasonsTheGameTranslates) {
    EXPECT_EQ(read_whole_file(folder_ + "/missing.txt", 1024).error, FILE_MISSING_REASON);
    EXPECT_EQ(read_whole_file(folder_, 1024).error, "is a directory, not a file");
    EXPECT_EQ(write_whole_file(folder_ + "/no folder/a.txt", "x"), system_error_text(ENOENT));
    ASSERT_EQ(write_whole_file(folder_ + "/big.txt", std::string(2000, 'x')), "");
    EXPECT_EQ(read_whole_file(folder_ + "/big.txt", 1000).error, file_too_large_reason(1000));
}

TEST_F(UnicodePaths, AppendFilesTakeFreeNamesInTheFolder) {
    std::string error;
    auto first = AppendFile::create_with_free_name(utf8_path(folder_), "session-J\xC3\xBCrgen",
                                                   ".csv", error);
    auto second = AppendFile::create_with_free_name(utf8_path(folder_), "session-J\xC3\xBCrgen",
                                                    ".csv", error);
    ASSERT_TRUE(first && second) << error;
    EXPECT_EQ(path_utf8(utf8_path(first->path()).filename()), "session-J\xC3\xBCrgen.csv");
    EXPECT_EQ(path_utf8(utf8_path(second->path()).filename()), "session-J\xC3\xBCrgen-2.csv");
    EXPECT_EQ(first->append("head\n"), "");
    EXPECT_EQ(first->append("one\n"), "");
    EXPECT_EQ(read_whole_file(first->path(), 1024).text.value_or(""), "head\none\n");

    EXPECT_FALSE(AppendFile::create_new(first->path(), error));
    EXPECT_NE(error.find("already there"), std::string::npos) << error;
    EXPECT_FALSE(AppendFile::create_new(folder_ + "/no folder/a.csv", error));
    EXPECT_EQ(error, system_error_text(ENOENT));
}

TEST(Utf8Path, KeepsEveryLetterBothWays) {
    const std::string name = "J\xC3\xBCrgen-\xE6\x97\xA5\xF0\x9F\x99\x82";
    EXPECT_EQ(path_utf8(utf8_path(name)), name);
    // What the system's calls receive: UTF-16 on Windows, the bytes themselves elsewhere.
#ifdef _WIN32
    EXPECT_EQ(utf8_path(name).native(), L"J\u00FCrgen-\u65E5\U0001F642");
#else
    EXPECT_EQ(utf8_path(name).native(), name);
#endif
    EXPECT_EQ(path_utf8(utf8_path("a") / utf8_path(name)).substr(2), name);
}

// The calls that go through std::filesystem rather than the game's own file functions.
TEST_F(UnicodePaths, FoldersAndNamesAreFoundUnderTheirOwnLetters) {
    DiskFiles files;
    const std::string nested = folder_ + "/Ordner-\xC3\xA4/\xE6\x97\xA5";
    ASSERT_EQ(files.create_directories(nested), "");
    EXPECT_TRUE(fs::is_directory(utf8_path(nested)));
    const std::string file = nested + "/level.txt";
    ASSERT_EQ(files.write(file, "p\n"), "");
    EXPECT_TRUE(files.exists(file));
    EXPECT_TRUE(file_exists(file));
    EXPECT_EQ(resolve_user_path(file), file);
    EXPECT_TRUE(same_file(file, nested + "/../\xE6\x97\xA5/level.txt"));
    EXPECT_FALSE(same_file(file, folder_));
}

}  // namespace
}  // namespace veldra
