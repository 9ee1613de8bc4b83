#include "ui/session_menus.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "config/game_configurations.h"
#include "config/localization.h"
#include "runtime/files.h"
#include "runtime/gc.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "support/menu_labels.h"
#include "support/scoped_environment.h"

namespace veldra {
namespace {

using Labels = std::vector<std::string>;

using testing::labels_of;

class SessionMenusTest : public ::testing::Test {
protected:
    // First, so that it is set before the members below are made and put back after.
    testing::ScopedEnvironment data_folder = testing::data_folder_is_source_tree();

    void SetUp() override {
        ASSERT_TRUE(reload_game_configurations(configs, *services.files, ""));
        ASSERT_TRUE(load_and_set_localization(*services.files, localization, "en"));
        trial.level_info.play_order = 1;
        trial.result.outcome = TrialOutcome::perished;
        trial.result.trial_score = 12.5;
    }
    GameConfigurations& mutable_configs() { return *configs.configs; }
    SessionMenuContext context(bool debug = false) {
        return {runtime, services, configs, localization, debug};
    }

    GcScope collector;
    Services services;
    Runtime runtime{services};
    ConfigsState configs;
    Localization localization;
    TrialData trial;
};

TEST_F(SessionMenusTest, TheResultMenuNumbersTheLevelAndSaysHowItEnded) {
    EXPECT_EQ(labels_of(_make_session_trial_result_menu(context(), trial, 3)),
              (Labels{"Level 2/3 done", "[pin_center]You perished.\nScore: 12.5[/]", "Continue"}));
    trial.result.outcome = TrialOutcome::survived;
    trial.result.trial_score = std::nan("");
    const MenuDefinition debug = _make_session_trial_result_menu(context(true), trial, 3);
    EXPECT_EQ(labels_of(debug), (Labels{"Level 2/3 done", "[pin_center]You survived!\nNo score[/]",
                                        "Continue", "DEBUG: Rerun level"}));
    EXPECT_EQ(_trial_result_choice_of(debug.entries.back().value), TrialResultChoice::play_again);
    EXPECT_EQ(_trial_result_choice_of(debug.entries[2].value), TrialResultChoice::next_level);
}

TEST_F(SessionMenusTest, TheEndMenuSavesOnlyKeptRecordsAndLinksOnlyWhenAnAddressIsSet) {
    Rng rng(1);
    auto trials = std::make_shared<std::vector<TrialData>>(1, trial);
    EXPECT_EQ(labels_of(_make_session_end_menu(context(), "P1", 40, trials, rng)),
              (Labels{"All levels done", "[pin_center]Your total score is 40.[/]", "Save results",
                      "[pin_center]Thank you for playing!\nYou may close the game now.[/]"}));
    mutable_configs().next_url = "https://survey.example/s?u={USER_ID}&s={TOTAL_SCORE}";
    const MenuDefinition server = _make_session_end_menu(context(), "P1", 40, nullptr, rng);
    ASSERT_EQ(server.entries.size(), 3u);  // no save button without records
    EXPECT_EQ(server.entries[2].kind, MenuEntryKind::link);
    EXPECT_EQ(server.entries[2].label, "Continue to the questionnaire");
    EXPECT_EQ(server.entries[2].url, "https://survey.example/s?u=P1&s=40");
}

TEST(SessionCompletionUrl, MovesTheScoreByAtMostTheRandomisationAndRoundsIt) {
    Rng exact(3);
    EXPECT_EQ(
        session_completion_url("a/{USER_ID}/{TOTAL_SCORE}/{TOTAL_SCORE}", "u 1", 12.25, 0, exact),
        "a/u 1/12.25/12.25");
    Rng first(9), second(9);
    for (int i = 0; i < 200; ++i) {
        const std::string url = session_completion_url("{TOTAL_SCORE}", "u", 100, 5, first);
        const double score = std::stod(url);
        EXPECT_EQ(score, std::round(score)) << url;
        EXPECT_GE(score, 95);
        EXPECT_LE(score, 105);
        EXPECT_EQ(session_completion_url("{TOTAL_SCORE}", "u", 100, 5, second), url);
    }
}

}  // namespace
}  // namespace veldra
