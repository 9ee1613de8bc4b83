#include "devtools/config_watcher.h"

#include <gtest/gtest.h>

#include <fstream>

#include "config/debug_settings.h"
#include "devtools/debug_tools.h"
#include "runtime/files.h"
#include "support/scratch_directory.h"
#include "ui/trial_views_fixture.h"

namespace veldra {
namespace {

namespace fs = std::filesystem;

void write_file(const fs::path& path, const std::string& text, int seconds_later) {
    std::ofstream(path, std::ios::binary) << text;
    // Set, not waited for: file systems keep modification times at various resolutions.
    static const auto hour_ago = fs::file_time_type::clock::now() - std::chrono::hours(1);
    fs::last_write_time(path, hour_ago + std::chrono::seconds(seconds_later));
}

TEST(FileChangeWatch, SeesChangedTimesButNotTheFirstLookOrAVanishedFile) {
    testing::ScratchDirectory dir("watch");
    const std::string a = (dir.path() / "a.json").string();
    const std::string b = (dir.path() / "b.json").string();
    write_file(a, "{}", 0);
    write_file(b, "{}", 0);
    FileChangeWatch watch;
    EXPECT_TRUE(watch.changed({a, b}).empty());
    write_file(b, "{ }", 5);
    EXPECT_EQ(watch.changed({a, b}), std::vector<std::string>{b});
    EXPECT_TRUE(watch.changed({a, b}).empty());
    fs::remove(a);
    EXPECT_TRUE(watch.changed({a, b}).empty());
    write_file(a, "{}", 9);
    EXPECT_EQ(watch.changed({a, b}), std::vector<std::string>{a});
}

class ConfigWatcherTest : public testing::TrialViewsTest {
protected:
    testing::ScratchDirectory dir{"hot_reload"};
    DebugSettings debugs;
    DiskFiles disk;
};

TEST_F(ConfigWatcherTest, ACustomFileSavedOnDiskReloadsAndABrokenSaveKeepsWhatRan) {
    const fs::path custom = dir.path() / "custom.json";
    write_file(custom, R"({"weight_explore": "1"})", 0);
    ASSERT_TRUE(reload_game_configurations(sim.configs, disk, custom.string()));
    ASSERT_EQ(sim.configs->weight_explore.source(), "1");
    create_debug_tools(runtime, {sim, debugs, disk});
    auto* watcher = runtime.instance_find<obj_config_watcher>(0);
    ASSERT_NE(watcher, nullptr);
    EXPECT_FALSE(watcher->check());

    write_file(custom, R"({"weight_explore": "2 + O"})", 10);
    EXPECT_TRUE(watcher->check());
    EXPECT_EQ(sim.configs->weight_explore.source(), "2 + O");
    EXPECT_TRUE(capture.contains("custom.json\" changed on disk; reloading."));
    EXPECT_TRUE(capture.contains("Reloaded the configuration after the change on disk."));

    write_file(custom, R"({"weight_explore": "2 + )", 20);
    EXPECT_TRUE(watcher->check());
    EXPECT_EQ(sim.configs->weight_explore.source(), "2 + O");
    EXPECT_TRUE(capture.contains("The configuration in effect was kept."));
    EXPECT_FALSE(watcher->check()) << "a change is reported once";
}

TEST_F(ConfigWatcherTest, LooksEveryHalfSecondOfFrames) {
    const fs::path custom = dir.path() / "custom.json";
    write_file(custom, R"({"weight_explore": "1"})", 0);
    ASSERT_TRUE(reload_game_configurations(sim.configs, disk, custom.string()));
    create_debug_tools(runtime, {sim, debugs, disk});
    frames(CONFIG_WATCH_INTERVAL_STEPS);  // the first look
    write_file(custom, R"({"weight_explore": "4"})", 10);
    frames(CONFIG_WATCH_INTERVAL_STEPS - 1);
    EXPECT_EQ(sim.configs->weight_explore.source(), "1");
    frames(1);
    EXPECT_EQ(sim.configs->weight_explore.source(), "4");
}

}  // namespace
}  // namespace veldra
