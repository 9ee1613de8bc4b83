#include "trials/session.h"

#include <cmath>
#include <filesystem>

#include "async/dialog_promises.h"
#include "async/waiters.h"
#include "config/localization.h"
#include "config/text_ids.h"
#include "runtime/dialogs.h"
#include "runtime/files.h"
#include "runtime/log.h"
#include "runtime/number_format.h"
#include "runtime/paths.h"
#include "runtime/runtime.h"
#include "trials/session_autosave.h"
#include "trials/simulation_state.h"
#include "trials/trial.h"
#include "trials/trial_level_info.h"
#include "veldra_version.h"
#include "world/level_file.h"

namespace veldra {

namespace {

// The record of the trial that has just reported its end: the traits it was started with (the
// ones the player chose), its level as counted from the cells, and its result.
TrialData finished_trial_record(const SimulationState& sim, const obj_trial& trial,
                                const TrialResult& result, const std::string& user_id,
                                const std::string& level_filename, std::size_t play_order,
                                double seed) {
    TrialData data;
    data.user_id = user_id;
    data.config_version = sim.configs->configuration_version;
    data.game_version = BUILD_VERSION;
    data.seed = seed;
    data.level_info = trial_level_info_from_level(sim.cell_types, *trial.level, level_filename,
                                                  static_cast<std::int64_t>(play_order));
    data.traits = trial.traits.value_or(PersonalityTraits{});
    data.result = result;
    return data;
}

// A failed append is counted, and the session goes on (the records are still in memory and can
// be saved at the end).
void autosave(LocalSession& session, const TrialData& record) {
    if (session.autosave && !session_autosave_keep(*session.autosave, record))
        ++session.records_not_autosaved;
}

}  // namespace

Promise<TrialData> _session_run_trial(SessionContext& context, const std::string& user_id,
                                      const std::string& level_filename, std::size_t play_order,
                                      std::size_t number_of_levels,
                                      std::optional<PersonalityTraits> preset_traits,
                                      double total_score, Rng& rng) {
    SimulationState& sim = context.sim;
    auto level = level_load_from_file(sim.files, sim.cell_types, resolve_user_path(level_filename));
    if (!level)
        return promise_reject<TrialData>(
            Value("Failed to load the level \"" + level_filename + "\"."));
    const PersonalityTraits traits = preset_traits.value_or(PersonalityTraits{});
    const double seed = static_cast<double>(rng.rng_irandom(std::int64_t{1} << 32));
    const std::string heading =
        session_traits_heading(context.localization, play_order + 1, number_of_levels);
    return trial_run(sim, *level, seed, traits, heading, total_score)
        .and_then([&sim, user_id, level_filename, play_order, seed](const TrialResult& result) {
            const obj_trial* trial = sim.current_trial();
            if (!trial)
                return promise_reject<TrialData>(
                    Value("The trial of \"" + level_filename + "\" ended without a result."));
            return promise_resolve(finished_trial_record(sim, *trial, result, user_id,
                                                         level_filename, play_order, seed));
        });
}

namespace {

// Plays level `i` of the session and every level after it. The result screen may ask for the
// same level again (a developer's rerun): that trial's record then takes the place of the first
// in the records kept for "Save results", while the autosave, which only ever grows, gets it as
// a later line with the same play_order.
Promise<void> play_session_level(SessionContext& context, std::shared_ptr<LocalSession> session,
                                 std::size_t i) {
    const std::size_t count = session->level_filenames.size();
    if (i >= count && session->repeat && count > 0)
        i = 0;
    if (i >= count)
        return promise_resolve();
    return _session_run_trial(context, session->user_id, session->level_filenames[i], i, count,
                              std::nullopt, session->total_score, session->rng)
        .and_then([&context, session](const TrialData& record) {
            session->trials->push_back(record);
            session->total_score += record.result.trial_score;
            autosave(*session, record);
            if (!context.screens.wait_traits_menus_closed)
                return promise_resolve(record);
            return context.screens.wait_traits_menus_closed().and_then([record] { return record; });
        })
        .and_then([&context, count](const TrialData& record) {
            if (!context.sim.configs->show_trial_result_menu || !context.screens.show_trial_result)
                return promise_resolve(TrialResultChoice::next_level);
            return context.screens.show_trial_result(record, count);
        })
        .and_then([&context, session, i](TrialResultChoice choice) {
            if (choice == TrialResultChoice::play_again) {
                session->total_score -= session->trials->back().result.trial_score;
                session->trials->pop_back();
                return play_session_level(context, session, i);
            }
            return play_session_level(context, session, i + 1);
        });
}

}  // namespace

std::string _string_replace_backslashes_with_forward_slashes(std::string name) {
    return text_replace(std::move(name), "\\", "/");
}

std::string session_traits_heading(const Localization& localization, std::size_t trial_number,
                                   std::size_t number_of_levels) {
    return text_replace(text_of(localization, lid::TraitMenu_Title), "TRIAL_NUMBER",
                        std::to_string(trial_number) + "/" + std::to_string(number_of_levels));
}

std::string trial_results_csv_text(const std::vector<TrialData>& trials) {
    std::string text = trial_data_as_csv_headers();
    for (const TrialData& trial : trials)
        text += trial_data_as_csv(trial);
    return text;
}

std::shared_ptr<LocalSession> local_session_start(SessionContext& context,
                                                  std::vector<std::string> level_filenames,
                                                  std::string user_id, Rng rng,
                                                  std::optional<AppendFile> autosave) {
    auto session = std::make_shared<LocalSession>();
    session->user_id = std::move(user_id);
    for (std::string& name : level_filenames)
        session->level_filenames.push_back(
            _string_replace_backslashes_with_forward_slashes(std::move(name)));
    session->rng = rng;
    session->autosave = std::move(autosave);
    log("Local session started for \"" + session->user_id + "\" with " +
        std::to_string(session->level_filenames.size()) + " levels.");

    // Nothing runs in the calling frame: the menu that started the session closes first.
    wait_one_step(context.sim.runtime)
        .and_then([&context, session]() { return play_session_level(context, session, 0); })
        .and_then([&context, session]() {
            session->finished = true;
            log("Local session finished with a total score of " +
                number_to_string(session->total_score) + ".");
            // Said here, not by the end screen, so a window and a headless run log the same.
            if (session->autosave && session->records_not_autosaved == 0)
                log("The session's results are in \"" + session->autosave->path() + "\".");
            if (context.screens.show_end)
                context.screens.show_end(session->user_id, session->total_score, session->trials);
        })
        .and_catch([&context, session](const Value& reason) {
            session->failed = true;
            std::string text = "The session stopped: " + to_string(reason);
            if (!session->trials->empty() && session->autosave)
                text += " The results of the trials played so far are in \"" +
                        session->autosave->path() + "\".";
            log_error(text);
            if (context.screens.show_problem)
                context.screens.show_problem(text);
        });
    return session;
}

Promise<std::optional<std::string>> save_trial_results_as_csv(
    Dialogs& dialogs, Files& files, std::shared_ptr<const std::vector<TrialData>> trials,
    const std::string& title, const std::string& cannot_save,
    std::function<std::string(const std::string&)> reason_text) {
    using SavedPath = std::optional<std::string>;
    return dialog_get_save_filename(dialogs, "*.csv", "trials.csv", title)
        .and_then([&dialogs, &files, trials, cannot_save,
                   reason_text](const std::string& path) -> SavedPath {
            if (path.empty())
                return std::nullopt;
            const std::string error = files.write(path, trial_results_csv_text(*trials));
            if (!error.empty()) {
                dialogs.show_message(text_replace(text_replace(cannot_save, "{0}", path), "{1}",
                                                  reason_text ? reason_text(error) : error));
                return std::nullopt;
            }
            log("Saved " + std::to_string(trials->size()) + " trial results to \"" + path + "\".");
            return path;
        });
}

}  // namespace veldra
