#include "ui/file_browser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "runtime/drives.h"
#include "runtime/file_io.h"
#include "runtime/utf8_path.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

namespace fs = std::filesystem;

class FileBrowserTest : public ::testing::Test {
protected:
    FileBrowserTest() {
        fs::create_directories(root() / "levels" / "old");
        std::ofstream(root() / "levels" / "level_01.txt") << "x";
        std::ofstream(root() / "notes.txt") << "x";
    }
    const fs::path& root() const { return dir.path(); }
    static std::string selected_name(const FileBrowser& browser) {
        return browser.selected() ? browser.listing().entries[*browser.selected()].name : "";
    }

    testing::ScratchDirectory dir{"file_browser"};
};

TEST_F(FileBrowserTest, StartsWhereTheInitialPathPoints) {
    const FileBrowser at_file(FileBrowserMode::open, "*.txt",
                              (root() / "levels" / "level_01.txt").string());
    EXPECT_EQ(at_file.folder(), root() / "levels");
    EXPECT_EQ(selected_name(at_file), "level_01.txt");
    const FileBrowser at_folder(FileBrowserMode::open, "*.txt", (root() / "levels/").string());
    EXPECT_EQ(at_folder.folder(), root() / "levels");
    const FileBrowser new_file(FileBrowserMode::save, "*.csv", (root() / "trials.csv").string());
    EXPECT_EQ(new_file.folder(), root());
    EXPECT_EQ(new_file.name, "trials.csv");
    const FileBrowser nowhere(FileBrowserMode::open, "*.txt", "");
    EXPECT_EQ(nowhere.folder(), fs::current_path());
}

TEST_F(FileBrowserTest, TypedPathsAreTakenFromTheCurrentFolder) {
    FileBrowser browser(FileBrowserMode::open, "*.txt", root().string());
    browser.go_to("levels/old/");
    EXPECT_EQ(browser.folder(), root() / "levels" / "old");
    browser.go_to("../..");
    EXPECT_EQ(browser.folder(), root());
    browser.go_to("no_such_thing");
    EXPECT_EQ(browser.folder(), root());
    EXPECT_NE(browser.notice().find("There is no file or folder"), std::string::npos);
    EXPECT_FALSE(browser.chosen());
    browser.go_to("levels/./level_01.txt");
    EXPECT_EQ(browser.chosen(), (root() / "levels" / "level_01.txt").string());
}

TEST_F(FileBrowserTest, SavingToATypedPathOnlyFillsInTheNameUntilAccepted) {
    FileBrowser browser(FileBrowserMode::save, "*.csv", (root() / "trials.csv").string());
    browser.go_to((root() / "levels" / "run.csv").string());
    EXPECT_EQ(browser.folder(), root() / "levels");
    EXPECT_EQ(browser.name, "run.csv");
    EXPECT_FALSE(browser.chosen());
    browser.go_to("missing/run.csv");
    EXPECT_NE(browser.notice().find("There is no folder"), std::string::npos);
    EXPECT_EQ(browser.folder(), root() / "levels");
    // A name may carry a folder of its own.
    browser.name = " old/run.csv ";
    browser.accept();
    EXPECT_EQ(browser.chosen(), (root() / "levels" / "old" / "run.csv").string());
}

TEST_F(FileBrowserTest, SavingRefusesAnEmptyNameAndAFolderName) {
    FileBrowser browser(FileBrowserMode::save, "*.csv", root().string());
    browser.name = "  ";
    browser.accept();
    EXPECT_EQ(browser.notice(), "Type a name for the file.");
    browser.name = "levels/";
    browser.accept();
    EXPECT_NE(browser.notice().find("\"levels\" is a folder"), std::string::npos);
    EXPECT_FALSE(browser.chosen());
    EXPECT_FALSE(browser.replace_question());
}

TEST_F(FileBrowserTest, NoticesSpeakTheDialogsLanguage) {
    DialogTexts german;
    german.type_name = "Tippe einen Namen für die Datei.";
    german.is_a_folder = "{0} ist ein Ordner.";
    FileBrowser browser(FileBrowserMode::save, "*.csv", root().string(), german);
    browser.name = "";
    browser.accept();
    EXPECT_EQ(browser.notice(), "Tippe einen Namen für die Datei.");
    browser.name = "levels";
    browser.accept();
    EXPECT_EQ(browser.notice(), "\"levels\" ist ein Ordner.");
}

TEST_F(FileBrowserTest, OkOnAFolderEntersItAndOkOnNothingAsksForAFile) {
    FileBrowser browser(FileBrowserMode::open, "*.txt", root().string());
    browser.accept();
    EXPECT_FALSE(browser.chosen());
    EXPECT_FALSE(browser.notice().empty());
    browser.select(0);  // "levels", the only folder
    browser.accept();
    EXPECT_EQ(browser.folder(), root() / "levels");
    EXPECT_TRUE(browser.notice().empty());
}

TEST_F(FileBrowserTest, ShowingAllFilesKeepsTheSelectedEntry) {
    std::ofstream(root() / "a.bin") << "x";
    FileBrowser browser(FileBrowserMode::open, "*.txt", (root() / "notes.txt").string());
    ASSERT_EQ(selected_name(browser), "notes.txt");
    browser.set_show_all(true);
    EXPECT_EQ(selected_name(browser), "notes.txt");
    EXPECT_EQ(browser.listing().entries.size(), 3u);  // levels, a.bin, notes.txt
}

TEST_F(FileBrowserTest, AFolderThatVanishedIsEnteredWithItsReasonAndLeftByGoingUp) {
    FileBrowser browser(FileBrowserMode::open, "*.txt", root().string());
    fs::remove_all(root() / "levels");
    browser.open_entry(0);  // still listed as "levels"
    EXPECT_EQ(browser.folder(), root() / "levels");
    EXPECT_TRUE(browser.listing().entries.empty());
    EXPECT_NE(browser.notice().find("Cannot read the folder"), std::string::npos);
    browser.go_up();
    EXPECT_EQ(browser.folder(), root());
    EXPECT_TRUE(browser.notice().empty());
    EXPECT_EQ(browser.listing().entries.size(), 1u);  // notes.txt
}

TEST_F(FileBrowserTest, GoingUpStopsAtTheRoot) {
    const fs::path top = fs::current_path().root_path();  // "/", or a drive's "C:\\"
    FileBrowser browser(FileBrowserMode::open, "", top.string());
    browser.go_up();
    EXPECT_EQ(browser.folder(), top);
}

// Every drive offered can be entered, and the one the program runs from is among them.
TEST_F(FileBrowserTest, EachDriveOfferedIsAFolderAndTheCurrentOneIsAmongThem) {
    const std::vector<std::string> drives = drive_roots();
    ASSERT_FALSE(drives.empty());
    bool current_listed = false;
    for (const std::string& drive : drives) {
        const fs::path root_path = utf8_path(drive);
        current_listed |= root_path == fs::current_path().root_path();
        FileBrowser browser(FileBrowserMode::open, "", drive);
        EXPECT_EQ(browser.folder(), root_path) << drive;
    }
    EXPECT_TRUE(current_listed);
}

TEST_F(FileBrowserTest, NamesInAnyLettersAreListedEnteredAndChosen) {
    const std::string folder = "J\xC3\xBCrgen-\xE6\x97\xA5";
    const std::string file =
        "Gr\xC3\xBC\xC3\x9F"
        "e.txt";
    fs::create_directory(root() / utf8_path(folder));
    ASSERT_EQ(write_whole_file(path_utf8(root() / utf8_path(folder) / utf8_path(file)), "x"), "");
    FileBrowser browser(FileBrowserMode::open, "*.txt", path_utf8(root()));
    const auto& entries = browser.listing().entries;
    const auto listed = std::find_if(entries.begin(), entries.end(), [&](const FolderEntry& entry) {
        return entry.name == folder;
    });
    ASSERT_NE(listed, entries.end());
    browser.open_entry(static_cast<std::size_t>(listed - entries.begin()));
    ASSERT_EQ(browser.listing().entries.size(), 1u);
    EXPECT_EQ(browser.listing().entries[0].name, file);
    browser.open_entry(0);
    ASSERT_TRUE(browser.chosen());
    EXPECT_EQ(read_whole_file(*browser.chosen(), 16).text.value_or("unreadable"), "x");
}

}  // namespace
}  // namespace veldra
