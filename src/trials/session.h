#pragma once
// A local session: the levels of a list played one after another as interactive trials, a
// running total score, a result screen after each trial and an end screen at the end, where the
// records can be saved as CSV. The whole session is one chain of promises on the frame loop; its
// state lives in a LocalSession shared by every step.
//
// Nothing a participant played may be lost: every finished trial's record is appended to the
// session's autosave file (trials/session_autosave.h) and on disk before the next trial starts.

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "async/promise.h"
#include "config/personality_traits.h"
#include "runtime/append_file.h"
#include "trials/trial_data.h"
#include "util/rng.h"

namespace veldra {

class Dialogs;
class Files;
struct Localization;
struct SimulationState;

// What the participant chose on the result screen: a developer may play the same level again.
enum class TrialResultChoice { next_level, play_again };

// What a session shows between trials. The window's are popup menus (ui/session_menus.h);
// tests give their own. Each returns a promise fulfilled when the participant moves on.
struct SessionScreens {
    // Unset: no result screen (as with show_trial_result_menu false).
    std::function<Promise<TrialResultChoice>(const TrialData& trial, std::size_t number_of_levels)>
        show_trial_result;
    // `trials` is null in a session whose records are not kept here (a server session).
    std::function<void(const std::string& user_id, double total_score,
                       std::shared_ptr<const std::vector<TrialData>> trials)>
        show_end;
    // Fulfilled once no traits menu is open any more (one may stay open during play).
    std::function<Promise<void>()> wait_traits_menus_closed;
    // A problem the participant must see (a level that cannot be loaded).
    std::function<void(const std::string& text)> show_problem;
};

struct LocalSession {
    std::string user_id;
    std::vector<std::string> level_filenames;  // in play order
    Rng rng;                                   // draws each trial's seed
    double total_score = 0;
    // One record per level played; a developer's rerun replaces the level's earlier record.
    std::shared_ptr<std::vector<TrialData>> trials = std::make_shared<std::vector<TrialData>>();
    // Every finished trial, reruns included, one line each; none: not kept on disk.
    std::optional<AppendFile> autosave;
    std::size_t records_not_autosaved = 0;  // appends that failed (the disk filled up, say)
    bool repeat = false;    // start again with the first level after the last, for ever
    bool finished = false;  // the end screen has been shown
    bool failed = false;    // the chain stopped on a rejection
};

struct SessionContext {
    SimulationState& sim;
    const Localization& localization;
    SessionScreens screens;
};

// Starts a local session of `level_filenames` (backslashes already or not yet replaced) for
// `user_id`. The first trial begins in a later frame. The returned state lets the caller watch
// it (and save it when the program is closed in the middle).
std::shared_ptr<LocalSession> local_session_start(SessionContext& context,
                                                  std::vector<std::string> level_filenames,
                                                  std::string user_id, Rng rng,
                                                  std::optional<AppendFile> autosave = {});

// One trial of a session: loads the level, draws the seed, lets the player choose traits under
// the numbered heading, plays it, and fulfils with the record. Rejected with a message naming
// the file when the level cannot be loaded; cancelled when the traits menu is left.
Promise<TrialData> _session_run_trial(SessionContext& context, const std::string& user_id,
                                      const std::string& level_filename, std::size_t play_order,
                                      std::size_t number_of_levels,
                                      std::optional<PersonalityTraits> preset_traits,
                                      double total_score, Rng& rng);

// The traits menu's heading for trial `trial_number` (1-based) of `number_of_levels`.
std::string session_traits_heading(const Localization& localization, std::size_t trial_number,
                                   std::size_t number_of_levels);

// The header line and one line per record, as the auto runner writes them.
std::string trial_results_csv_text(const std::vector<TrialData>& trials);

// Asks for a file name (filter "*.csv", proposing "trials.csv") and writes the records there.
// Fulfilled with the path written, or nullopt when no name was given or the file could not be
// written (then a message says why and nothing else is touched); cancelled with the dialog.
// `title` heads the dialog; `cannot_save` is the message when writing fails, {0} the path and
// {1} the reason as `reason_text` words it (the participant's language).
Promise<std::optional<std::string>> save_trial_results_as_csv(
    Dialogs& dialogs, Files& files, std::shared_ptr<const std::vector<TrialData>> trials,
    const std::string& title = "Save results as",
    const std::string& cannot_save =
        "The results could not be saved to \"{0}\": {1}. Choose another place.",
    std::function<std::string(const std::string&)> reason_text = {});

// "a\b\c.txt" -> "a/b/c.txt": level names compare the same however they were spelled.
std::string _string_replace_backslashes_with_forward_slashes(std::string name);

}  // namespace veldra
