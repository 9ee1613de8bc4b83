#include "ui/file_listing.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <fstream>

#include "support/scratch_directory.h"

namespace veldra {
namespace {

namespace fs = std::filesystem;

void touch(const fs::path& path) {
    std::ofstream(path) << "x";
}

std::vector<std::string> names(const FolderListing& listing) {
    std::vector<std::string> out;
    for (const auto& entry : listing.entries)
        out.push_back(entry.is_folder ? entry.name + "/" : entry.name);
    return out;
}

TEST(FileFilterTest, PatternsIgnoreCaseAndAListTakesAnyOfItsPatterns) {
    const FileFilter json = parse_file_filter("*.json");
    EXPECT_TRUE(json.lets_through("levels.json"));
    EXPECT_TRUE(json.lets_through("LEVELS.JSON"));
    EXPECT_FALSE(json.lets_through("levels.json.bak"));
    EXPECT_FALSE(json.lets_through("json"));
    const FileFilter list = parse_file_filter(" *.csv ;*.txt;; level_??.dat ");
    EXPECT_EQ(list.describe(), "*.csv;*.txt;level_??.dat");
    EXPECT_TRUE(list.lets_through("a.txt"));
    EXPECT_TRUE(list.lets_through("trials.csv"));
    EXPECT_TRUE(list.lets_through("level_04.dat"));
    EXPECT_FALSE(list.lets_through("level_4.dat"));
    EXPECT_FALSE(list.lets_through("a.json"));
    // A star must be able to take any run, including one that looks like the rest of the pattern.
    EXPECT_TRUE(parse_file_filter("*a*b").lets_through("aXbYab"));
    EXPECT_FALSE(parse_file_filter("*a*b").lets_through("aXbYa"));
}

TEST(FileFilterTest, EmptyOrStarMeansEveryFile) {
    for (const char* filter : {"", "  ", "*", "*.*", "*.json;*"}) {
        const FileFilter all = parse_file_filter(filter);
        EXPECT_TRUE(all.lets_through("anything.bin")) << filter;
        EXPECT_TRUE(all.lets_through("no_extension")) << filter;
        EXPECT_EQ(all.describe(), "all files") << filter;
    }
}

TEST(ListFolderTest, FoldersComeFirstThenFilteredFilesEachByNameIgnoringCase) {
    testing::ScratchDirectory dir("listing");
    fs::create_directory(dir.path() / "zeta");
    fs::create_directory(dir.path() / "Alpha");
    fs::create_directory(dir.path() / ".git");
    for (const char* file : {"b.json", "A.json", "c.txt", ".hidden.json", "D.JSON"})
        touch(dir.path() / file);
    const FolderListing filtered = list_folder(dir.path(), parse_file_filter("*.json"), false);
    EXPECT_TRUE(filtered.error.empty());
    EXPECT_FALSE(filtered.truncated);
    EXPECT_EQ(names(filtered),
              (std::vector<std::string>{"Alpha/", "zeta/", "A.json", "b.json", "D.JSON"}));
    const FolderListing all = list_folder(dir.path(), parse_file_filter("*.json"), true);
    EXPECT_EQ(names(all), (std::vector<std::string>{".git/", "Alpha/", "zeta/", ".hidden.json",
                                                    "A.json", "b.json", "c.txt", "D.JSON"}));
}

TEST(ListFolderTest, AHugeFolderIsCutAtTheLimitAndSaysSo) {
    testing::ScratchDirectory dir("listing_huge");
    for (int i = 0; i < 30; ++i)
        touch(dir.path() / ("f" + std::to_string(i) + ".txt"));
    const FolderListing cut = list_folder(dir.path(), FileFilter{}, false, 10);
    EXPECT_TRUE(cut.truncated);
    EXPECT_EQ(cut.entries.size(), 10u);
    const FolderListing whole = list_folder(dir.path(), FileFilter{}, false, 30);
    EXPECT_FALSE(whole.truncated);
    EXPECT_EQ(whole.entries.size(), 30u);
}

TEST(ListFolderTest, LinksInLoopsAndLinksToNowhereAreListedAsFiles) {
    testing::ScratchDirectory dir("listing_links");
    fs::create_directory_symlink(".", dir.path() / "here");  // a loop back to itself
    fs::create_symlink("loop_b", dir.path() / "loop_a");
    fs::create_symlink("loop_a", dir.path() / "loop_b");
    fs::create_symlink("missing", dir.path() / "dangling");
    const FolderListing listing = list_folder(dir.path(), FileFilter{}, false);
    EXPECT_TRUE(listing.error.empty());
    EXPECT_EQ(names(listing), (std::vector<std::string>{"here/", "dangling", "loop_a", "loop_b"}));
    // The link to itself can be entered again and again without the listing growing.
    EXPECT_EQ(names(list_folder(dir.path() / "here" / "here", FileFilter{}, false)),
              names(listing));
}

TEST(ListFolderTest, AFolderThatCannotBeReadGivesItsReasonNotAnException) {
    testing::ScratchDirectory dir("listing_unreadable");
    touch(dir.path() / "plain.txt");
    const FolderListing missing = list_folder(dir.path() / "gone", FileFilter{}, false);
    EXPECT_TRUE(missing.entries.empty());
    EXPECT_NE(missing.error.find("Cannot read the folder"), std::string::npos);
    EXPECT_NE(missing.error.find("gone"), std::string::npos);
    const FolderListing not_folder = list_folder(dir.path() / "plain.txt", FileFilter{}, false);
    EXPECT_TRUE(not_folder.entries.empty());
    EXPECT_FALSE(not_folder.error.empty());
}

TEST(ListFolderTest, AFolderWithoutReadPermissionSaysSoInsteadOfLookingEmpty) {
    if (::geteuid() == 0)
        GTEST_SKIP() << "root may read every folder";
    testing::ScratchDirectory dir("listing_locked");
    const fs::path locked = dir.path() / "locked";
    fs::create_directory(locked);
    touch(locked / "secret.txt");
    fs::permissions(locked, fs::perms::none);
    const FolderListing listing = list_folder(locked, FileFilter{}, false);
    fs::permissions(locked, fs::perms::owner_all);
    EXPECT_TRUE(listing.entries.empty());
    EXPECT_NE(listing.error.find("Permission denied"), std::string::npos) << listing.error;
}

}  // namespace
}  // namespace veldra
