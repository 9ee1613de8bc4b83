#include "ui/traits_menu.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "async/promise_event_loop.h"
#include "config/game_configurations.h"
#include "config/localization.h"
#include "runtime/gc.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "support/scoped_environment.h"

namespace veldra {
namespace {

// Menus without a window: the entries are activated as a click would.
class TraitsMenuTest : public ::testing::Test {
protected:
    // First, so that it is set before the members below are made and put back after.
    testing::ScopedEnvironment data_folder = testing::data_folder_is_source_tree();

    void SetUp() override {
        ASSERT_TRUE(reload_game_configurations(configs, *services.files, ""));
        ASSERT_TRUE(load_and_set_localization(*services.files, localization, "de"));
        start_promise_event_loop(runtime);
        runtime.start(runtime.room_add({"rm_game", nullptr}));
    }
    void TearDown() override { runtime.shutdown(); }
    void frames(int n) {
        for (int i = 0; i < n; ++i) {
            runtime.run_frame();
            services.clock->frame_done();
        }
    }
    obj_popup_menu* top() {
        const std::size_t n = runtime.instance_number<obj_popup_menu>();
        return n ? runtime.instance_find<obj_popup_menu>(n - 1) : nullptr;
    }

    GcScope collector;
    Services services;
    Runtime runtime{services};
    ConfigsState configs;
    Localization localization;
};

TEST_F(TraitsMenuTest, FieldsStartClampedIntoTheOfferedRanges) {
    // The shipped configuration offers -1, 0 and 1 for every trait.
    const TraitFields fields = make_trait_fields({5, -3, 0.5, 0, -1}, configs);
    EXPECT_EQ(fields.traits(), (PersonalityTraits{1, -1, 0.5, 0, -1}));
    EXPECT_EQ(fields.openness->minimum, -1);
    EXPECT_EQ(fields.openness->maximum, 1);
}

TEST_F(TraitsMenuTest, ExplainsEveryTraitInTheLanguageAndEndsWithStart) {
    const TraitFields fields = make_trait_fields({}, configs);
    const MenuDefinition menu = make_personality_traits_menu(fields, "Level 1/2", localization);
    ASSERT_EQ(menu.entries.size(), 2u + 5 * 2 + 1);
    EXPECT_EQ(menu.entries[0].label, "Level 1/2");
    EXPECT_EQ(menu.entries[3].kind, MenuEntryKind::slider);
    EXPECT_EQ(menu.entries[3].label, "Offenheit");
    EXPECT_EQ(menu.entries[3].field, fields.openness);
    EXPECT_EQ(menu.entries[2].label.rfind("Wie neugierig", 0), 0u);
    EXPECT_EQ(menu.entries.back().kind, MenuEntryKind::button);
    EXPECT_EQ(menu.entries.back().label, "Start");
}

TEST_F(TraitsMenuTest, StartAnswersWithTheChoiceAndAPanelMayStayUntilClosed) {
    // Out of range at first: what Start answers with is what the fields held, clamped.
    const PersonalityTraits traits{5, 0, -0.25, 0, -9};
    Promise<PersonalityTraits> chosen =
        get_personality_traits_via_menu(runtime, traits, "Level 1/1", configs, localization, true);
    obj_popup_menu* menu = top();
    ASSERT_TRUE(menu);
    EXPECT_EQ(popup_menus_open(runtime, TRAITS_MENU_NAME), 1u);
    menu->activate("Offenheit");  // a slider does nothing when clicked without moving
    EXPECT_TRUE(chosen.is_pending());
    ASSERT_TRUE(menu->activate("Start"));
    frames(2);
    EXPECT_TRUE(chosen.is_fulfilled());
    EXPECT_EQ(chosen.value(), (PersonalityTraits{1, 0, -0.25, 0, -1}));
    // The panel with the chosen values stays for the trial.
    EXPECT_EQ(popup_menus_open(runtime, TRAITS_MENU_NAME), 1u);
    Promise<void> closed = wait_close_all_personality_traits_menus(runtime);
    frames(3);
    EXPECT_TRUE(closed.is_pending());
    close_personality_traits_menus(runtime);
    frames(3);
    EXPECT_TRUE(closed.is_fulfilled());
}

}  // namespace
}  // namespace veldra
