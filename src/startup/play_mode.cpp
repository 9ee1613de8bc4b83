#include "startup/play_mode.h"

#include <cstdio>
#include <memory>

#include "async/room_goer.h"
#include "config/game_configurations.h"
#include "config/logger.h"
#include "config/run_files_folder.h"
#include "config/text_ids.h"
#include "runtime/append_file.h"
#include "runtime/file_io.h"
#include "runtime/log.h"
#include "runtime/number_format.h"
#include "runtime/paths.h"
#include "runtime/runtime.h"
#include "serial/json.h"
#include "startup/app_state.h"
#include "startup/parameter_values.h"
#include "startup/run_program.h"
#include "startup/trial_parameters.h"
#include "trials/input_record.h"
#include "trials/trial.h"
#include "trials/trial_data.h"
#include "ui/trial_end_banner.h"
#include "world/level_file.h"

namespace veldra {

namespace {

// After the end the window stays a while, so the player sees the final score count up; a key
// or a click closes it sooner.
constexpr std::int64_t LINGER_FRAMES = 8 * 60;

struct PlaySession {
    InputRecord record;
    // Made before the trial starts, never over an existing file; none when replaying.
    std::optional<AppendFile> record_file;
    bool replaying = false;
};

std::string result_json(const TrialResult& result) {
    return json_stringify(trial_result_to_value(result), false);
}

// Ends the program once the player has had a look at the end of the trial.
class obj_play_ender final : public Instance {
    VELDRA_OBJECT(obj_play_ender, Instance)
public:
    obj_play_ender(AppState& app, int status) : app_(app), status_(status) {}
    void on_step() override {
        const InputFrame& input = runtime().services().input->frame();
        // Fullscreen and screenshot keys are for looking at the end, not for leaving it.
        auto keys = input.keys_pressed;
        keys.reset(static_cast<std::size_t>(Key::f11));
        keys.reset(static_cast<std::size_t>(Key::f12));
        const bool dismissed = keys.any() || input.buttons_pressed.any();
        if (app_.services.headless || dismissed || ++frames_ >= LINGER_FRAMES)
            end_program(app_, status_);
    }

private:
    AppState& app_;
    int status_;
    std::int64_t frames_ = 0;
};

bool save_record(PlaySession& session) {
    const std::string& path = session.record_file->path();
    const std::string error = session.record_file->append(input_record_to_text(session.record));
    if (!error.empty()) {
        log_error("Cannot save the trial's inputs to \"" + path + "\": " + error + ".");
        return false;
    }
    log("The trial's inputs are saved in \"" + path + "\"; replay them with replay=" + path);
    return true;
}

std::string text(const AppState& app, std::string_view id) {
    return text_of(app.localization, id);
}

// What the window shows over the last frame while it stays open.
void show_end_banner(AppState& app, const PlaySession& session, const TrialResult& result,
                     bool replay_matched) {
    std::vector<std::string> lines;
    lines.push_back(text(app, result.outcome == TrialOutcome::perished
                                  ? lid::TrialEndMenu_ResultPerished
                                  : lid::TrialEndMenu_ResultSurvived));
    lines.push_back(text_replace(text(app, lid::TrialEndMenu_Score), "TRIAL_SCORE",
                                 number_to_string(result.trial_score)));
    if (session.replaying)
        lines.push_back(
            text(app, replay_matched ? lid::TrialEnd_ReplayMatched : lid::TrialEnd_ReplayDiffered));
    lines.push_back(text(app, lid::TrialEnd_CloseHint));
    std::erase_if(lines, [](const std::string& line) { return line.empty(); });
    app.runtime.instance_create<obj_trial_end_banner>(0, 0, "", std::move(lines));
}

void finish(AppState& app, PlaySession& session, const TrialResult& result) {
    int status = 0;
    if (session.replaying) {
        if (trial_results_equal(result, *session.record.result)) {
            log("The replay reached the recorded result.");
        } else {
            log_error("The replay ended differently from the recording: recorded " +
                      result_json(*session.record.result) + ", replayed " + result_json(result) +
                      ".");
            status = 1;
        }
    } else {
        session.record.result = result;
        if (!save_record(session))
            status = 1;
    }
    std::printf("%s\n", result_json(result).c_str());
    std::fflush(stdout);
    if (!app.services.headless)
        show_end_banner(app, session, result, status == 0);
    app.runtime.instance_create<obj_play_ender>(0, 0, "Instances", app, status);
}

// When the window is closed before the end, what was played so far is kept.
void on_quit(AppState& app, PlaySession& session) {
    obj_trial* trial = app.sim.current_trial();
    if (!session.replaying && trial && !trial->result) {
        session.record.result.reset();
        session.record.abandoned_at = trial->ticker.spent_ticks;
        session.record.commands = app.sim.world.player_commands.applied;
        log("The trial was left before its end.");
        save_record(session);
    }
    end_program(app, 0);
}

void run_trial(AppState& app, std::shared_ptr<PlaySession> session, Level level,
               double game_speed) {
    SimulationState& sim = app.sim;
    app.on_quit_requested = [&app, session](bool) { on_quit(app, *session); };
    room_goto_or_restart(app.runtime, app.runtime.room_find("rm_game"))
        .and_then([&sim, session, level = std::move(level), game_speed] {
            auto& trial = sim.runtime.instance_create<obj_trial>(0, 0, "Instances", sim);
            sim.trial.trial = trial.id();
            trial.initialize(level, session->record.seed, false, game_speed, 0);
            if (session->replaying)
                for (const PlayerCommand& command : session->record.commands)
                    sim.world.player_commands.push(command);
            return std::get<Promise<TrialResult>>(trial.start(session->record.traits));
        })
        .and_then([&app, &sim, session](const TrialResult& result) {
            if (!session->replaying)
                session->record.commands = sim.world.player_commands.applied;
            finish(app, *session, result);
        })
        .and_catch([&app](const Value& reason) {
            log_error("The trial failed: " + to_string(reason));
            end_program(app, 1);
        });
}

// Reads the level file once for its digest and once through the level reader; nullopt (logged)
// when either fails.
std::optional<Level> load_level(AppState& app, const std::string& path, std::string& digest) {
    const std::string resolved = resolve_user_path(path);
    const FileText text = app.services.files->read(resolved, MAX_LEVEL_FILE_BYTES);
    if (!text) {
        log_error("Cannot read the level file \"" + resolved + "\": " + text.error + ".");
        return std::nullopt;
    }
    digest = level_digest_of(*text.text);
    return level_load_for_trial(*app.services.files, app.sim.cell_types, resolved);
}

std::optional<std::string> configuration_digest(AppState& app) {
    std::string why;
    auto digest = configuration_digest_of(*app.services.files, app.sim.configs, why);
    if (!digest)
        log_error("Cannot read the configuration to fingerprint it: " + why + ".");
    return digest;
}

}  // namespace

std::optional<AppendFile> create_input_record_file(const ProgramParameters& params,
                                                   const std::string& level_name,
                                                   const std::string& stamp, std::string& error) {
    if (params.record_inputs && !params.record_inputs->empty())
        return AppendFile::create_new(*params.record_inputs, error);
    return AppendFile::create_with_free_name(
        run_files_folder(params.log_output_file),
        (level_name.empty() ? "trial" : level_name) + "-" + stamp, ".inputs", error);
}

void start_play_mode(AppState& app, const ProgramParameters& params) {
    const auto trial_params = read_trial_parameters(app, params);
    if (!trial_params)
        return;
    auto session = std::make_shared<PlaySession>();
    session->record.level_path = *params.play_level;
    session->record.seed = trial_params->seed;
    session->record.traits = trial_params->traits;
    auto level = load_level(app, *params.play_level, session->record.level_digest);
    const auto config_digest = configuration_digest(app);
    if (!level || !config_digest)
        return end_program(app, 1);
    session->record.configuration_digest = *config_digest;
    const bool given = params.record_inputs && !params.record_inputs->empty();
    if (given && same_file(*params.record_inputs, resolve_user_path(*params.play_level)))
        return bad_parameter(app, "record_inputs", *params.record_inputs,
                             "names the level file itself; choose another file for the "
                             "recording.");
    // Made now, so a path that cannot be written stops the program before anybody plays.
    std::string error;
    session->record_file = create_input_record_file(
        params, level->name, make_file_name_stamp(app.services.clock->local_now()), error);
    if (!session->record_file) {
        if (given)
            return bad_parameter(app, "record_inputs", *params.record_inputs,
                                 "cannot be made: " + error +
                                     ". A recording never replaces a file; name a new one.");
        log_error("Cannot make a file for the trial's inputs beside the log: " + error + ".");
        return end_program(app, 1);
    }
    log("Playing \"" + resolve_user_path(*params.play_level) + "\"; inputs are recorded to \"" +
        session->record_file->path() + "\".");
    run_trial(app, session, std::move(*level), app.sim.configs->game_speed);
}

void start_replay_mode(AppState& app, const ProgramParameters& params) {
    const std::string path = resolve_user_path(*params.replay);
    const FileText text = app.services.files->read(path, MAX_INPUT_RECORD_FILE_BYTES);
    if (!text) {
        log_error("Cannot replay \"" + path + "\": " + text.error + ".");
        return end_program(app, 1);
    }
    std::string why;
    auto record = input_record_parse(*text.text, why);
    if (!record) {
        log_error("Cannot replay \"" + path + "\": the file " + why + ".");
        return end_program(app, 1);
    }
    if (!record->result) {
        log_error("Cannot replay \"" + path + "\": the trial was left at tick " +
                  std::to_string(record->abandoned_at) + " and has no result to reach.");
        return end_program(app, 1);
    }
    auto session = std::make_shared<PlaySession>();
    session->replaying = true;
    session->record = std::move(*record);
    std::string level_digest;
    const std::string level_path =
        params.play_level ? *params.play_level : session->record.level_path;
    auto level = load_level(app, level_path, level_digest);
    const auto config_digest = configuration_digest(app);
    if (!level || !config_digest)
        return end_program(app, 1);
    if (level_digest != session->record.level_digest) {
        log_error("Cannot replay \"" + path + "\": it was recorded on another level than \"" +
                  resolve_user_path(level_path) + "\" (the level file has changed).");
        return end_program(app, 1);
    }
    if (*config_digest != session->record.configuration_digest) {
        log_error("Cannot replay \"" + path +
                  "\": it was recorded with another configuration than the one loaded now.");
        return end_program(app, 1);
    }
    // Headless, nobody watches: the whole trial runs in one frame.
    run_trial(app, session, std::move(*level),
              app.services.headless ? -1 : app.sim.configs->game_speed);
}

}  // namespace veldra
