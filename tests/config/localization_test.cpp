#include "config/localization.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "runtime/files.h"
#include "runtime/gc.h"
#include "runtime/log.h"
#include "runtime/paths.h"
#include "runtime/process_state.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

class LocalizationTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(root / "datafiles" / "localization");
        process_state().program_directory = root;
        initialize_localization(localization);
    }
    void write_language(const std::string& code, const std::string& text) {
        std::ofstream(root / "datafiles" / "localization" / (code + ".ini")) << text;
    }
    void TearDown() override { process_state().program_directory.clear(); }

    GcScope collector;
    DiskFiles files;
    Localization localization;
    LogCapture capture;
    testing::ScratchDirectory scratch{"veldra_localization_test"};
    std::filesystem::path root = scratch.path();
};

TEST_F(LocalizationTest, LoadsTheSectionTurnsBackslashNIntoLineBreaksAndFillsPlaceholders) {
    write_language(
        "t",
        "; comment\r\n[other]\r\nHud_TotalScore=wrong\r\n[localization]\r\n"
        "Hud_TotalScore=Total\r\nTwo=Line one\\nLine two\r\nFill={0} and {0}, then {1} {2}\r\n");
    ASSERT_TRUE(load_and_set_localization(files, localization, "t"));
    const Language* language = localization.active_language();
    ASSERT_NE(language, nullptr);
    EXPECT_EQ(language->get("Hud_TotalScore"), "Total");
    EXPECT_EQ(language->get("Two"), "Line one\nLine two");
    EXPECT_EQ(language->get("Fill", {"a", "b"}), "a and a, then b {2}");
    EXPECT_TRUE(capture.lines.empty());
}

TEST_F(LocalizationTest, MissingLidWarnsOnEveryLookup) {
    write_language("t", "[localization]\nA=1\n");
    ASSERT_TRUE(load_and_set_localization(files, localization, "t"));
    EXPECT_FALSE(localization.active_language()->get("B"));
    EXPECT_FALSE(localization.active_language()->get("B"));
    EXPECT_EQ(capture.count("Language doesn't have LID \"B\"."), 2u);
}

TEST_F(LocalizationTest, MissingFileIsLoggedAndKeepsTheActiveLanguage) {
    EXPECT_FALSE(load_and_set_localization(files, localization, "xx"));
    EXPECT_EQ(localization.active_language(), nullptr);
    const std::string path = (root / "datafiles" / "localization" / "xx.ini").string();
    ASSERT_EQ(capture.lines.size(), 2u);
    EXPECT_EQ(capture.lines[0].level, LogLevel::error);
    EXPECT_EQ(capture.lines[0].message, "Localization file \"" + path + "\" no such file.");
    EXPECT_EQ(capture.lines[1].message, "Failed to load localization file \"" + path + "\".");

    write_language("t", "[localization]\nA=1\n");
    ASSERT_TRUE(load_and_set_localization(files, localization, "t"));
    EXPECT_FALSE(load_and_set_localization(files, localization, "xx"));
    EXPECT_EQ(localization.active_language()->get("A"), "1");
}

// A code is a name: one that is a path is refused with the reason, before any file is read.
TEST_F(LocalizationTest, ACodeWithASlashIsRefusedSayingWhy) {
    write_language("t", "[localization]\nA=1\n");
    for (const std::string code : {"../localization/t", "..\\t", "de/"}) {
        capture.lines.clear();
        EXPECT_FALSE(load_and_set_localization(files, localization, code)) << code;
        ASSERT_EQ(capture.lines.size(), 2u) << code;
        EXPECT_EQ(capture.lines[0].message,
                  "\"" + code +
                      "\" is not a language code: give a name such as en or de, without \"/\" "
                      "or \"\\\".")
            << code;
    }
    EXPECT_EQ(localization.active_language(), nullptr);
}

TEST_F(LocalizationTest, StrayLinesAreWarnedAndAMissingSectionIsAnError) {
    write_language("t", "[localization]\nA=1\nnot a line\nB=2\n");
    ASSERT_TRUE(load_and_set_localization(files, localization, "t"));
    EXPECT_EQ(localization.active_language()->get("B"), "2");
    const std::string path = (root / "datafiles" / "localization" / "t.ini").string();
    EXPECT_TRUE(
        capture.contains("Localization file \"" + path +
                         "\", line 3: \"not a line\" is not a LID=text line; it is skipped."));

    capture.lines.clear();
    write_language("nosection", "A=1\n[other]\nB=2\n");
    EXPECT_FALSE(load_and_set_localization(files, localization, "nosection"));
    EXPECT_TRUE(capture.contains("nosection.ini\" has no [localization] section."));
    EXPECT_EQ(localization.active_language()->get("A"), "1");  // the language before stays

    // A code is a name: no path leads out of the language folder.
    capture.lines.clear();
    write_language("../configurations", "[localization]\nA=x\n");
    EXPECT_FALSE(load_and_set_localization(files, localization, "../configurations"));
    std::filesystem::create_directories(root / "datafiles" / "localization" / "dir.ini");
    EXPECT_FALSE(load_and_set_localization(files, localization, "dir"));
}

// The language comes from the files handed in: nothing of it is on the disk.
TEST_F(LocalizationTest, LanguagesAreReadThroughTheGivenFiles) {
    MemoryFiles memory;
    const std::string path = make_included_file_filename("localization/mem.ini");
    memory.files[path] = "[localization]\nA=from memory\n";
    ASSERT_TRUE(load_and_set_localization(memory, localization, "mem"));
    EXPECT_EQ(localization.active_language()->get("A"), "from memory");
    EXPECT_FALSE(load_and_set_localization(files, localization, "mem"));  // not on the disk

    // Too large in memory is reported as on the disk, and the language before stays.
    capture.lines.clear();
    memory.files[path] = std::string(MAX_LOCALIZATION_FILE_BYTES + 1, ';');
    EXPECT_FALSE(load_and_set_localization(memory, localization, "mem"));
    ASSERT_EQ(capture.lines.size(), 2u);
    EXPECT_EQ(
        capture.lines[0].message,
        "Localization file \"" + path + "\" is larger than 4 MiB, the most this file may hold.");
    EXPECT_EQ(localization.active_language()->get("A"), "from memory");
}

TEST(ShippedLanguages, EnglishAndGermanDefineTheSameLids) {
    auto read = [](const std::string& code) {
        std::ifstream in(std::string(VELDRA_SOURCE_DIR) + "/datafiles/localization/" + code +
                         ".ini");
        std::stringstream text;
        text << in.rdbuf();
        return parse_language(text.str(), code);
    };
    auto en = read("en");
    auto de = read("de");
    ASSERT_TRUE(en && de);
    EXPECT_GE(en->lines.size(), 20u);
    for (const auto& [lid, text] : en->lines)
        EXPECT_TRUE(de->lines.count(lid)) << lid;
    EXPECT_EQ(en->lines.size(), de->lines.size());
}

}  // namespace
}  // namespace veldra
