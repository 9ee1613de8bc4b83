#include "devtools/debug_menu.h"

#include <gtest/gtest.h>

#include "devtools/debug_tools.h"
#include "runtime/files.h"
#include "ui/trial_views_fixture.h"

namespace veldra {
namespace {

TEST(DebugMenu, EverySwitchIsSavedTheMomentItChangesAndReadBackAlone) {
    for (const DebugSwitch& which : debug_switches()) {
        MemoryFiles files;
        DebugSettings settings;
        set_debug_switch(settings, files, which, false);
        const auto saved = _load_debug_settings_from_file(files, DEBUG_SETTINGS_PATH);
        ASSERT_TRUE(saved) << which.field;
        for (const DebugSwitch& other : debug_switches())
            EXPECT_EQ((*saved).*other.member, &other != &which)
                << which.field << " / " << other.field;
        set_debug_switch(settings, files, which, true);
        EXPECT_TRUE((*_load_debug_settings_from_file(files, DEBUG_SETTINGS_PATH)).*which.member);
    }
}

TEST(DebugMenu, SwitchesAreFoundByFieldOrLabelAndEveryFieldHasOne) {
    EXPECT_EQ(find_debug_switch("Sight ranges"), find_debug_switch("show_sight_ranges"));
    EXPECT_EQ(find_debug_switch("Trait data")->member, &DebugSettings::show_trait_data);
    EXPECT_EQ(find_debug_switch("sight"), nullptr);
    // Every bool of the settings file is a switch, once.
    DebugSettings all_off;
    for (const DebugSwitch& which : debug_switches()) {
        EXPECT_TRUE(all_off.*which.member) << which.field << " twice";
        all_off.*which.member = false;
    }
    MemoryFiles files;
    _save_debug_settings_to_file(files, all_off, DEBUG_SETTINGS_PATH);
    EXPECT_EQ(files.files[DEBUG_SETTINGS_PATH].find("true"), std::string::npos);
}

class DebugToolsTest : public testing::TrialViewsTest {
protected:
    static InputFrame ctrl_d() {
        InputFrame input;
        input.keys_down[static_cast<std::size_t>(Key::ctrl)] = true;
        input.keys_down[static_cast<std::size_t>(Key::d)] = true;
        input.keys_pressed[static_cast<std::size_t>(Key::d)] = true;
        return input;
    }
    DebugSettings debugs;
    MemoryFiles files;
};

TEST_F(DebugToolsTest, CtrlDTogglesThePanelsWhichShowOnlyOverATrial) {
    obj_debug_tools& tools = create_debug_tools(runtime, {sim, debugs, files});
    const auto* menu = runtime.instance_find<obj_debug_menu>(0);
    ASSERT_NE(menu, nullptr);
    InputFrame d_alone;
    d_alone.keys_pressed[static_cast<std::size_t>(Key::d)] = true;
    frames(1, d_alone);
    EXPECT_FALSE(tools.visible);
    frames(1, ctrl_d());
    EXPECT_TRUE(tools.visible);
    EXPECT_FALSE(menu->showing()) << "no trial is played";
    obj_trial& trial = start_trial(level_from_rows({"xxxxx", "x p x", "xxxxx"}));
    frames(1);
    EXPECT_TRUE(menu->showing());
    ASSERT_NE(front_overlay(runtime), nullptr);
    EXPECT_EQ(front_overlay(runtime)->overlay_layer(), OverlayLayer::panel);
    frames(1, ctrl_d());
    EXPECT_FALSE(menu->showing());
    EXPECT_EQ(front_overlay(runtime), nullptr);
    EXPECT_EQ(trial.state, TrialState::Running);
}

}  // namespace
}  // namespace veldra
