#include "config/debug_settings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "runtime/gc.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

class DebugSettingsTest : public ::testing::Test {
protected:
    void write(const std::string& text) { std::ofstream(path) << text; }
    GcScope collector;
    testing::ScratchDirectory scratch{"veldra_debug_settings_test"};
    std::filesystem::path dir = scratch.path();
    std::string path = (dir / "settings.json").string();
};

TEST_F(DebugSettingsTest, MissingOrMalformedFileGivesNothing) {
    EXPECT_FALSE(_load_debug_settings_from_file(path));
    write("{ not json");
    EXPECT_FALSE(_load_debug_settings_from_file(path));
    write("[1, 2]");
    EXPECT_FALSE(_load_debug_settings_from_file(path));
}

TEST_F(DebugSettingsTest, TypeRulesConvertOnlyToBool) {
    write(
        R"({"show_ids": 0, "show_log": 1, "show_energies": "yes", "lang": 5, "custom_config": "fast", "extra": 1})");
    auto settings = _load_debug_settings_from_file(path);
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
    ASSERT_TRUE(_save_debug_settings_to_file(settings, nested));
    auto loaded = _load_debug_settings_from_file(nested);
    ASSERT_TRUE(loaded);
    EXPECT_FALSE(loaded->show_ids);
    EXPECT_EQ(loaded->lang, "de");
    EXPECT_TRUE(loaded->show_trait_data);
}

}  // namespace
}  // namespace veldra
