#pragma once
// A server session: the levels of a list played as trials for a registered user, each record
// submitted to the research server right after its trial. Each step asks the server which of
// the levels the user has submitted and plays the first that is left, so a session that was
// interrupted (the program closed, the machine restarted) resumes where it stopped. Every
// record also goes to the session's autosave on disk before it is submitted, so a record the
// server never got is not lost.

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "async/promise.h"
#include "config/personality_traits.h"
#include "runtime/append_file.h"
#include "trials/session.h"
#include "util/rng.h"

namespace veldra {

class obj_api;
class Outbox;

struct ServerSession {
    std::string user_id;
    std::vector<std::string> level_filenames;  // in play order, backslashes replaced
    Rng rng;                                   // draws each trial's seed
    std::optional<AppendFile> autosave;        // none: records are only submitted
    std::size_t records_not_autosaved = 0;
    std::size_t trials_played = 0;  // by this run of the program
    bool finished = false;          // the end screen has been shown
    bool failed = false;            // stopped on a failure
};

// What a server session needs beyond a local one: the API client and the loading status.
struct ServerSessionContext {
    SessionContext session;
    obj_api& api;
    std::function<void(const std::string& text)> set_loading_status;
    std::function<void()> clear_loading_status;
    // A failure the participant must see ("Failed to submit trial data."); the session stops.
    std::function<void(const std::string& text)> show_message;
    // Where each record waits, from before it is sent until the server confirms it; none: the
    // autosave alone keeps it.
    std::shared_ptr<Outbox> outbox;
    // The pause between two tries to send what still waits when the end screen is due.
    std::function<Promise<void>()> wait_before_retry;
};

std::shared_ptr<ServerSession> make_server_session(std::vector<std::string> level_filenames,
                                                   std::string user_id, Rng rng,
                                                   std::optional<AppendFile> autosave = {});

// Sends the records of `user_id` that wait in the outbox (from an earlier start whose
// submissions failed), oldest first, before the session goes on; fulfilled with how many still
// wait. Without an outbox, none.
Promise<std::size_t> server_session_send_waiting(ServerSessionContext& context,
                                                 const std::string& user_id);

// One step: asks the server for the submitted levels and plays the next one, or shows the end
// screen when none is left. Called again by itself after each submitted trial with that trial's
// traits as the next preset and the total so far. Started without a total, the session takes
// the user's total over its levels from the server when some were submitted before, so that a
// resumed session ends with the same total as an uninterrupted one.
void server_session_start(ServerSessionContext& context, std::shared_ptr<ServerSession> session,
                          std::optional<PersonalityTraits> preset_traits = std::nullopt,
                          std::optional<double> total_score = std::nullopt);

// The user's total on the server over `level_names` (both sides with backslashes replaced);
// records without a score are skipped. nullopt, with a warning, when the records cannot be had.
Promise<std::optional<double>> user_get_total_score_of_levels(
    obj_api& api, const std::string& user_id, const std::vector<std::string>& level_names);

}  // namespace veldra
