// The file calls with names outside ASCII and the reasons they give, on every system: Windows
// takes such names only through its wide calls, so a conversion missed there shows up here
// as a wrongly named file or one that cannot be found again.
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "runtime/append_file.h"
#include "runtime/file_io.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

namespace fs = std::filesystem;

// A path from the program's UTF-8 text, however the system spells paths.
fs::path from_utf8(const std::string& text) {
    return fs::path(std::u8string(reinterpret_cast<const char8_t*>(text.data()), text.size()));
}

std::string to_utf8(const fs::path& path) {
    const std::u8string text = path.u8string();
    return std::string(reinterpret_cast<const char*>(text.data()), text.size());
}

class UnicodePaths : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(fs::create_directory(from_utf8(folder_))); }

    testing::ScratchDirectory scratch_{"unicode_paths"};
    const std::string folder_ = to_utf8(scratch_.path() / "J\xC3\xBCrgen");
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
    for (const auto& entry : fs::directory_iterator(from_utf8(folder_)))
        names.push_back(to_utf8(entry.path().filename()));
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
    auto first = AppendFile::create_with_free_name(from_utf8(folder_), "session-J\xC3\xBCrgen",
                                                   ".csv", error);
    auto second = AppendFile::create_with_free_name(from_utf8(folder_), "session-J\xC3\xBCrgen",
                                                    ".csv", error);
    ASSERT_TRUE(first && second) << error;
    EXPECT_EQ(to_utf8(from_utf8(first->path()).filename()), "session-J\xC3\xBCrgen.csv");
    EXPECT_EQ(to_utf8(from_utf8(second->path()).filename()), "session-J\xC3\xBCrgen-2.csv");
    EXPECT_EQ(first->append("head\n"), "");
    EXPECT_EQ(first->append("one\n"), "");
    EXPECT_EQ(read_whole_file(first->path(), 1024).text.value_or(""), "head\none\n");

    EXPECT_FALSE(AppendFile::create_new(first->path(), error));
    EXPECT_NE(error.find("already there"), std::string::npos) << error;
    EXPECT_FALSE(AppendFile::create_new(folder_ + "/no folder/a.csv", error));
    EXPECT_EQ(error, system_error_text(ENOENT));
}

}  // namespace
}  // namespace veldra
