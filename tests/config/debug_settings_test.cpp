#include "config/debug_settings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "runtime/files.h"
#include "runtime/gc.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

class DebugSettingsTest : public ::testing::Test {
protected:
    void write(const std::string& text) { std::ofstream(path) << text; }
    GcScope collector;
    DiskFiles files;
    testing::ScratchDirectory scratch{"veldra_debug_settings_test"};
    std::filesystem::path dir = scratch.path();
    std::string path = (dir / "settings.json").string();
};

TEST_F(DebugSettingsTest, MissingOrMalformedFileGivesNothing) {
    EXPECT_FALSE(_load_debug_settings_from_file(files, path));
    write("{ not json");
    EXPECT_FALSE(_load_debug_settings_from_file(files, path));
    write("[1, 2]");
    EXPECT_FALSE(_load_debug_settings_from_file(files, path));
}

TEST_F(DebugSettingsTest, TypeRulesConvertOnlyToBool) {
    write(
        R"({"show_ids": 0, "show_log": 1, "show_energies": "yes", "lang": 5, "custom_config": "fast", "extra": 1})");
    auto settings = _load_debug_settings_from_file(files, path);
    ASSERT_TRUE(settings);
    EXPECT_FALSE(settings->show_ids);
    EXPECT_TRUE(settings->show_log);
    EXPECT_TRUE(settings->show_energies);  // a string is not converted: default kept
    EXPECT_EQ(settings->lang, "en");
    EXPECT_EQ(settings->custom_config, "fast");
    EXPECT_TRUE(settings->show_pathfinding);
    EXPECT_EQ(settings->dev_session_user_id, "test_user");
}

TEST_F(DebugSettingsTest, SaveThenLoadGivesTheSameRecordAndCreatesTheFolder) {
    DebugSettings settings;
    settings.show_ids = false;
    settings.lang = "de";
    const std::string nested = (dir / "debug" / "debug_settings.json").string();
    ASSERT_TRUE(_save_debug_settings_to_file(files, settings, nested));
    auto loaded = _load_debug_settings_from_file(files, nested);
    ASSERT_TRUE(loaded);
    EXPECT_FALSE(loaded->show_ids);
    EXPECT_EQ(loaded->lang, "de");
    EXPECT_TRUE(loaded->show_trait_data);
}

// The settings a developer keeps go through the files start-up hands in: none of this reaches
// the disk, not even the folder the file would be saved in.
TEST(DebugSettingsInMemory, SavedAndReadBackThroughTheGivenFiles) {
    GcScope collector;
    MemoryFiles files;
    files.files[DEBUG_SETTINGS_PATH] = R"({"lang": "de", "show_log": false})";
    const DebugSettings active = load_active_debug_settings(files);
    EXPECT_EQ(active.lang, "de");
    EXPECT_FALSE(active.show_log);

    DebugSettings changed = active;
    changed.custom_config = "fast";
    const std::string path = "veldra_memory_only/debug_settings.json";
    ASSERT_TRUE(_save_debug_settings_to_file(files, changed, path));
    EXPECT_FALSE(std::filesystem::exists("veldra_memory_only"));
    EXPECT_NE(files.files.at(path).find("\"custom_config\": \"fast\""), std::string::npos);
    const auto loaded = _load_debug_settings_from_file(files, path);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->custom_config, "fast");
    EXPECT_EQ(loaded->lang, "de");

    save_active_debug_settings(files, DebugSettings{});
    EXPECT_EQ(load_active_debug_settings(files).lang, "en");
}

}  // namespace
}  // namespace veldra
