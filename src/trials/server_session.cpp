#include "trials/server_session.h"

#include <algorithm>
#include <utility>

#include "config/game_configurations.h"
#include "net/obj_api.h"
#include "net/outbox.h"
#include "net/outbox_sending.h"
#include "runtime/log.h"
#include "runtime/number_format.h"
#include "serial/json.h"
#include "trials/session_autosave.h"
#include "trials/simulation_state.h"
#include "trials/trial_data.h"

namespace veldra {

namespace {

std::vector<std::string> normalised(std::vector<std::string> names) {
    for (std::string& name : names)
        name = _string_replace_backslashes_with_forward_slashes(std::move(name));
    return names;
}

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

void stop(ServerSessionContext& context, ServerSession& session, const std::string& text) {
    session.failed = true;
    log_error(text);
    if (context.session.screens.show_problem)
        context.session.screens.show_problem(text);
}

void show_end(ServerSessionContext& context, ServerSession& session, double total_score) {
    session.finished = true;
    log("Server session finished for \"" + session.user_id + "\" with a total score of " +
        number_to_string(total_score) + ".");
    if (context.session.screens.show_end)
        context.session.screens.show_end(session.user_id, total_score, nullptr);
}

// The record goes into the outbox before it is sent, so that a crash or a lost answer leaves it
// there to be sent at the next start.
std::optional<OutboxEntry> keep_in_outbox(ServerSessionContext& context, const TrialData& record,
                                          const Value& body) {
    if (!context.outbox)
        return std::nullopt;
    std::string error;
    std::optional<OutboxEntry> entry =
        context.outbox->put({.user_id = record.user_id.value_or(""),
                             .level_file = record.level_info.filename,
                             .seed = record.seed},
                            json_stringify(body, false), error);
    if (!entry)
        log_warning("The result of \"" + record.level_info.filename +
                    "\" could not be put in the outbox (" + error +
                    "); if the server does not take it, only the autosave keeps it.");
    return entry;
}

void confirm_in_outbox(Outbox& outbox, const OutboxEntry& entry) {
    const std::string problem = outbox.confirm(entry);
    if (!problem.empty())
        log_warning("A result the server stored is still in the outbox (" + problem +
                    "); it is sent again at the next start, and the server keeps it once.");
}

// The completion link leads the participant away: it is shown only once the server has every
// record of theirs that is waiting here. Until then the loading status counts them and the
// sending is tried again.
Promise<void> send_everything_before_the_end(ServerSessionContext& context,
                                             const std::string& user_id,
                                             bool status_shown = false) {
    return server_session_send_waiting(context, user_id)
        .and_then([&context, user_id, status_shown](std::size_t waiting) {
            if (waiting == 0 || !context.wait_before_retry) {
                if (status_shown)
                    context.clear_loading_status();
                return promise_resolve();
            }
            context.set_loading_status(
                std::to_string(waiting) +
                (waiting == 1 ? " trial result is" : " trial results are") +
                " still waiting to be sent to the server. Please keep the game open; it keeps "
                "trying.");
            return context.wait_before_retry().and_then([&context, user_id] {
                return send_everything_before_the_end(context, user_id, true);
            });
        });
}

Promise<void> after_submission(ServerSessionContext& context,
                               std::shared_ptr<ServerSession> session, const TrialData& record,
                               double total_score) {
    const SessionScreens& screens = context.session.screens;
    Promise<void> result_screen = promise_resolve();
    if (context.session.sim.configs->show_trial_result_menu && screens.show_trial_result)
        result_screen = screens.show_trial_result(record, session->level_filenames.size())
                            .and_then([](TrialResultChoice) {});
    return result_screen.and_then([&context, session, record, total_score] {
        server_session_start(context, session, record.traits,
                             total_score + record.result.trial_score);
    });
}

// Plays level `index` of the session, keeps its record on disk, then submits it.
Promise<void> play_and_submit(ServerSessionContext& context, std::shared_ptr<ServerSession> session,
                              std::size_t index, std::optional<PersonalityTraits> preset_traits,
                              double total_score) {
    return _session_run_trial(context.session, session->user_id, session->level_filenames[index],
                              index, session->level_filenames.size(), preset_traits, total_score,
                              session->rng)
        .and_then([&context, session](const TrialData& record) {
            ++session->trials_played;
            if (session->autosave && !session_autosave_keep(*session->autosave, record))
                ++session->records_not_autosaved;
            if (!context.session.screens.wait_traits_menus_closed)
                return promise_resolve(record);
            return context.session.screens.wait_traits_menus_closed().and_then(
                [record] { return record; });
        })
        .and_then([&context, session, total_score](const TrialData& record) {
            context.set_loading_status("Submitting...");
            const Value body = trial_data_to_value(record);
            const std::optional<OutboxEntry> waiting = keep_in_outbox(context, record, body);
            return context.api.trial_submit(body).and_then(
                [&context, session, record, total_score, waiting](bool stored) -> Promise<void> {
                    context.clear_loading_status();
                    if (stored && waiting)
                        confirm_in_outbox(*context.outbox, *waiting);
                    if (stored)
                        return after_submission(context, session, record, total_score);
                    session->failed = true;
                    log_error("The result of \"" + record.level_info.filename +
                              "\" was not stored on the server; the session stops." +
                              (session->autosave
                                   ? " It is kept in \"" + session->autosave->path() + "\"."
                                   : std::string()));
                    context.show_message("Failed to submit trial data.");
                    return promise_resolve();
                });
        });
}

}  // namespace

std::shared_ptr<ServerSession> make_server_session(std::vector<std::string> level_filenames,
                                                   std::string user_id, Rng rng,
                                                   std::optional<AppendFile> autosave) {
    auto session = std::make_shared<ServerSession>();
    session->user_id = std::move(user_id);
    session->level_filenames = normalised(std::move(level_filenames));
    session->rng = rng;
    session->autosave = std::move(autosave);
    return session;
}

void server_session_start(ServerSessionContext& context, std::shared_ptr<ServerSession> session,
                          std::optional<PersonalityTraits> preset_traits,
                          std::optional<double> total_score) {
    context.set_loading_status("Loading...");
    context.api.user_get_submitted_levels(session->user_id)
        .and_then([&context, session, preset_traits, total_score](
                      const std::optional<std::vector<std::string>>& submitted) -> Promise<void> {
            context.clear_loading_status();
            if (!submitted) {
                stop(context, *session, "Failed to get user data.");
                return promise_resolve();
            }
            const std::vector<std::string> done = normalised(*submitted);
            const std::vector<std::string>& levels = session->level_filenames;
            std::optional<std::size_t> next;
            std::size_t submitted_here = 0;
            for (std::size_t i = 0; i < levels.size(); ++i) {
                if (contains(done, levels[i]))
                    ++submitted_here;
                else if (!next)
                    next = i;
            }
            // The total so far: carried from the previous step, else (the first step of a
            // session that started before) what the server holds for these levels.
            Promise<double> total =
                total_score || submitted_here == 0
                    ? promise_resolve(total_score.value_or(0.0))
                    : user_get_total_score_of_levels(context.api, session->user_id, levels)
                          .and_then(
                              [](const std::optional<double>& sum) { return sum.value_or(0.0); });
            return total.and_then([&context, session, next, preset_traits](double sum) {
                if (!next) {
                    return send_everything_before_the_end(context, session->user_id)
                        .and_then([&context, session, sum] { show_end(context, *session, sum); });
                }
                log("Server session for \"" + session->user_id + "\": level " +
                    std::to_string(*next + 1) + " of " +
                    std::to_string(session->level_filenames.size()) + " (\"" +
                    session->level_filenames[*next] + "\").");
                return play_and_submit(context, session, *next, preset_traits, sum);
            });
        })
        .and_catch([&context, session](const Value& reason) {
            context.clear_loading_status();
            stop(context, *session, "The session stopped: " + to_string(reason));
        });
}

Promise<std::size_t> server_session_send_waiting(ServerSessionContext& context,
                                                 const std::string& user_id) {
    if (!context.outbox)
        return promise_resolve(std::size_t{0});
    return outbox_send_waiting(context.outbox, user_id, outbox_submit_with(context.api))
        .and_then([user_id](const OutboxSendResult& result) {
            for (const std::string& problem : result.problems)
                log_warning("Outbox: " + problem);
            if (result.sent > 0)
                log("Sent " + std::to_string(result.sent) + " trial results of \"" + user_id +
                    "\" that were waiting in the outbox.");
            if (result.waiting > 0)
                log_warning(std::to_string(result.waiting) + " trial results of \"" + user_id +
                            "\" are still waiting in the outbox.");
            return result.waiting;
        });
}

Promise<std::optional<double>> user_get_total_score_of_levels(
    obj_api& api, const std::string& user_id, const std::vector<std::string>& level_names) {
    const std::vector<std::string> wanted = normalised(level_names);
    return api.user_get_submitted_trials(user_id, std::vector<std::string>{"level_info", "result"})
        .and_then([wanted](const std::optional<Value>& trials) -> std::optional<double> {
            if (!trials) {
                log_warning("Failed to get user submitted trials!");
                return std::nullopt;
            }
            double sum = 0;
            for (std::size_t i = 0; i < trials->size(); ++i) {
                const Value& trial = trials->at(i);
                const Value filename = trial.get("level_info").get("filename");
                const Value score = trial.get("result").get("trial_score");
                if (filename.is_string() && score.is_number() &&
                    contains(wanted, _string_replace_backslashes_with_forward_slashes(
                                         filename.as_string())))
                    sum += score.as_number();
            }
            return sum;
        });
}

}  // namespace veldra
