#include "ui/session_menus.h"

#include <cmath>

#include "config/file_error_texts.h"
#include "config/game_configurations.h"
#include "config/localization.h"
#include "config/text_ids.h"
#include "runtime/number_format.h"
#include "runtime/random_source.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "ui/traits_menu.h"
#include "ui/trial_views.h"

namespace veldra {

namespace {

// Characters a second: the outcome types itself out, a small moment of suspense.
constexpr double RESULT_TYPING_SPEED = 30;
// The value of the developer's "play again" button; the menu answers with TrialResultChoice.
constexpr const char* PLAY_AGAIN_BUTTON = "play_again";

// The menus between trials stand over the finished world, dimmed, and step aside from the player
// so that its last moment stays in view.
PopupOptions between_trials_options(const Runtime& runtime) {
    PopupOptions options;
    options.dim_behind = true;
    if (const auto* views = runtime.instance_find<obj_trial_views>(0))
        options.keep_clear = views->player_on_screen();
    return options;
}

}  // namespace

MenuDefinition _make_session_trial_result_menu(const SessionMenuContext& context,
                                               const TrialData& trial,
                                               std::size_t total_num_levels) {
    const Localization& language = context.localization;
    MenuDefinition menu;
    menu.entries.push_back(menu_heading(text_replace(
        text_of(language, lid::TrialEndMenu_Title), "TRIAL_NUMBER",
        std::to_string(trial.level_info.play_order + 1) + "/" + std::to_string(total_num_levels))));
    const std::string outcome = text_of(language, trial.result.outcome == TrialOutcome::survived
                                                      ? lid::TrialEndMenu_ResultSurvived
                                                      : lid::TrialEndMenu_ResultPerished);
    const std::string score =
        std::isnan(trial.result.trial_score)
            ? text_of(language, lid::TrialEndMenu_NoScore)
            : text_replace(text_of(language, lid::TrialEndMenu_Score), "TRIAL_SCORE",
                           number_to_string(trial.result.trial_score));
    MenuEntry result = menu_text("[pin_center]" + outcome + "\n" + score + "[/]");
    result.typewriter = RESULT_TYPING_SPEED;
    menu.entries.push_back(std::move(result));
    menu.entries.push_back(menu_button(text_of(language, lid::TrialEndMenu_Submit), Value(true)));
    if (context.debug)
        menu.entries.push_back(menu_button("DEBUG: Rerun level", Value(PLAY_AGAIN_BUTTON)));
    return menu;
}

TrialResultChoice _trial_result_choice_of(const Value& pressed) {
    return pressed == Value(PLAY_AGAIN_BUTTON) ? TrialResultChoice::play_again
                                               : TrialResultChoice::next_level;
}

Promise<TrialResultChoice> session_show_trial_result_menu(const SessionMenuContext& context,
                                                          const TrialData& trial,
                                                          std::size_t total_num_levels) {
    context.services.audio->play(Sound::trial_end);
    return create_popup_menu(context.runtime,
                             _make_session_trial_result_menu(context, trial, total_num_levels),
                             between_trials_options(context.runtime))
        .and_then(_trial_result_choice_of);
}

std::string session_completion_url(const std::string& next_url, const std::string& user_id,
                                   double total_score, double randomization, Rng& rng) {
    double score = total_score;
    if (randomization > 0 && std::isfinite(randomization))
        score = std::round(total_score + rng.rng_random_range(-randomization, randomization));
    return text_replace(text_replace(next_url, "{USER_ID}", user_id), "{TOTAL_SCORE}",
                        number_to_string(score));
}

MenuDefinition _make_session_end_menu(const SessionMenuContext& context, const std::string& user_id,
                                      double total_score,
                                      std::shared_ptr<const std::vector<TrialData>> trials,
                                      Rng& rng) {
    const Localization& language = context.localization;
    MenuDefinition menu;
    menu.entries.push_back(menu_heading(text_of(language, lid::FinishedMenu_Title)));
    menu.entries.push_back(menu_text("[pin_center]" +
                                     text_replace(text_of(language, lid::FinishedMenu_ScoreText),
                                                  "TOTAL_SCORE", number_to_string(total_score)) +
                                     "[/]"));
    if (trials) {
        Services& services = context.services;
        menu.entries.push_back(menu_function(
            text_of(language, lid::FinishedMenu_SaveResults), [&services, &language, trials] {
                save_trial_results_as_csv(*services.dialogs, *services.files, trials,
                                          text_of(language, lid::FinishedMenu_SaveTitle),
                                          text_of(language, lid::FinishedMenu_SaveFailed),
                                          [&language](const std::string& reason) {
                                              return file_error_text(language, reason);
                                          })
                    .and_then([&services, &language](const std::optional<std::string>& path) {
                        if (path)
                            services.dialogs->show_message(
                                text_of(language, lid::FinishedMenu_Saved, {*path}));
                    });
            }));
    }
    const std::string& next_url = context.configs->next_url;
    if (!next_url.empty())
        menu.entries.push_back(
            menu_link(text_of(language, lid::FinishedMenu_UrlLinkButtonText),
                      session_completion_url(next_url, user_id, total_score,
                                             context.configs->url_score_randomization, rng)));
    else
        menu.entries.push_back(
            menu_text("[pin_center]" + text_of(language, lid::FinishedMenu_NoLinkText) + "[/]"));
    return menu;
}

void session_show_end_menu(const SessionMenuContext& context, const std::string& user_id,
                           double total_score,
                           std::shared_ptr<const std::vector<TrialData>> trials) {
    Rng rng(static_cast<double>(random_seed_value()));
    PopupOptions options = between_trials_options(context.runtime);
    options.persistent = true;
    options.name = "session_end";
    create_popup_menu(context.runtime,
                      _make_session_end_menu(context, user_id, total_score, std::move(trials), rng),
                      options);
}

SessionScreens window_session_screens(const SessionMenuContext& context) {
    SessionScreens screens;
    screens.show_trial_result = [context](const TrialData& trial, std::size_t count) {
        return session_show_trial_result_menu(context, trial, count);
    };
    screens.show_end = [context](const std::string& user_id, double total,
                                 std::shared_ptr<const std::vector<TrialData>> trials) {
        session_show_end_menu(context, user_id, total, std::move(trials));
    };
    screens.wait_traits_menus_closed = [&runtime = context.runtime] {
        close_personality_traits_menus(runtime);
        return wait_close_all_personality_traits_menus(runtime);
    };
    screens.show_problem = [&services = context.services](const std::string& text) {
        services.dialogs->show_message(text);
    };
    return screens;
}

}  // namespace veldra
