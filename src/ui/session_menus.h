#pragma once
// What a session shows in the window between trials: the result menu after each trial and the
// end menu with the total score, the button that saves the records as CSV and the link to
// whatever comes after the session (a questionnaire).

#include <memory>
#include <string>
#include <vector>

#include "async/promise.h"
#include "trials/session.h"
#include "trials/trial_data.h"
#include "ui/popup_menu.h"
#include "util/rng.h"

namespace veldra {

class Runtime;
struct ConfigsState;
struct Localization;
struct Services;

struct SessionMenuContext {
    Runtime& runtime;
    Services& services;
    const ConfigsState& configs;
    const Localization& localization;
    bool debug = false;  // offers "DEBUG: Rerun level"
};

MenuDefinition _make_session_trial_result_menu(const SessionMenuContext& context,
                                               const TrialData& trial,
                                               std::size_t total_num_levels);
// What pressing the result menu's button with this value chooses.
TrialResultChoice _trial_result_choice_of(const Value& pressed);
// Plays the menu sound and shows the result menu; fulfilled with the participant's choice when
// they move on.
Promise<TrialResultChoice> session_show_trial_result_menu(const SessionMenuContext& context,
                                                          const TrialData& trial,
                                                          std::size_t total_num_levels);

// The completion link: `next_url` with {USER_ID} and {TOTAL_SCORE} filled in. The score is moved
// by a uniform draw from [-randomization, +randomization] and rounded to a whole number, so a
// participant cannot read their exact score from the address; 0 keeps it exact.
std::string session_completion_url(const std::string& next_url, const std::string& user_id,
                                   double total_score, double randomization, Rng& rng);

// `trials` is null in a server session (no save button).
MenuDefinition _make_session_end_menu(const SessionMenuContext& context, const std::string& user_id,
                                      double total_score,
                                      std::shared_ptr<const std::vector<TrialData>> trials,
                                      Rng& rng);
void session_show_end_menu(const SessionMenuContext& context, const std::string& user_id,
                           double total_score,
                           std::shared_ptr<const std::vector<TrialData>> trials);

// The screens of a session in the window, for local_session_start.
SessionScreens window_session_screens(const SessionMenuContext& context);

}  // namespace veldra
