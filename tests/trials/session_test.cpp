#include "trials/session.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "async/promise.h"
#include "async/promise_event_loop.h"
#include "config/game_configurations.h"
#include "config/localization.h"
#include "runtime/dialogs.h"
#include "runtime/gc.h"
#include "runtime/log.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "support/scoped_environment.h"
#include "support/scratch_directory.h"
#include "support/scripted_answers.h"
#include "trials/game_systems.h"
#include "trials/session_autosave.h"
#include "trials/simulation_state.h"

namespace veldra {
namespace {

// Two small levels on disk and a session whose screens are recorded instead of shown. Trials run
// at game speed -1: each is over in one frame.
class LocalSessionTest : public ::testing::Test {
protected:
    // First, so that it is set before the members below are made and put back after.
    testing::ScopedEnvironment data_folder = testing::data_folder_is_source_tree();

    void SetUp() override {
        initialize_game_systems(sim);
        ASSERT_TRUE(reload_game_configurations(sim.configs, sim.files, ""));
        configs().trial_time = 0.5;
        configs().game_speed = -1;
        configs().show_trial_result_menu = true;
        Language english;
        english.lines["TraitMenu_Title"] = "Level TRIAL_NUMBER";
        localization.active = english;
        start_promise_event_loop(runtime);
        runtime.start(runtime.room_add({"rm_game", nullptr}));
        write_level("a.txt", "xxxxx\nx p x\nxxxxx\n");
        write_level("b.txt", "xxxxxx\nxp  hx\nxxxxxx\n");
        screens.show_trial_result = [this](const TrialData& trial, std::size_t count) {
            results_shown.push_back(std::to_string(trial.level_info.play_order + 1) + "/" +
                                    std::to_string(count));
            records_shown.push_back(trial);
            return promise_resolve(TrialResultChoice::next_level);
        };
        screens.show_end = [this](const std::string& user, double total,
                                  std::shared_ptr<const std::vector<TrialData>> trials) {
            end_user = user;
            end_total = total;
            end_trials = trials;
        };
        screens.show_problem = [this](const std::string& text) { problems.push_back(text); };
        sim.ask_personality_traits = [this](const PersonalityTraits& offered,
                                            const std::string& heading) {
            headings.push_back(heading);
            PersonalityTraits chosen = offered;
            chosen.openness = 1;  // what the participant chose
            chosen.neuroticism = -0.5 * static_cast<double>(headings.size());
            return promise_resolve(chosen);
        };
    }
    void TearDown() override { runtime.shutdown(); }

    GameConfigurations& configs() { return *sim.configs.configs; }
    std::string path(const std::string& name) const { return (folder.path() / name).string(); }
    // As a record names the level: with forward slashes on every system.
    std::string record_name(const std::string& name) const {
        return (folder.path() / name).generic_string();
    }
    void write_level(const std::string& name, const std::string& text) {
        std::ofstream(path(name)) << text;
    }
    std::optional<AppendFile> make_autosave(const std::string& user) {
        std::string error;
        auto file = session_autosave_create(folder.path(), user, "20240307-090541", error);
        EXPECT_TRUE(file) << error;
        return file;
    }
    void run_until_done(const LocalSession& session) {
        for (int frame = 0; frame < 600 && !session.finished && !session.failed; ++frame) {
            runtime.run_frame();
            services.clock->frame_done();
        }
    }

    GcScope collector;
    Services services;
    Runtime runtime{services};
    SimulationState sim{runtime};
    Localization localization;
    LogCapture capture;
    testing::ScratchDirectory folder{"session"};
    SessionScreens screens;
    SessionContext context{sim, localization, {}};

    std::vector<std::string> results_shown;
    std::vector<TrialData> records_shown;
    std::vector<std::string> headings;
    std::vector<std::string> problems;
    std::string end_user;
    double end_total = -1;
    std::shared_ptr<const std::vector<TrialData>> end_trials;
};

TEST_F(LocalSessionTest, PlaysEveryLevelInOrderAndKeepsEachRecord) {
    context.screens = screens;
    auto session = local_session_start(context, {path("a.txt"), path("b.txt")}, "P7", Rng(42),
                                       make_autosave("P7"));
    const std::string autosave = session->autosave->path();
    EXPECT_TRUE(headings.empty());  // nothing runs in the frame that starts the session
    run_until_done(*session);
    ASSERT_TRUE(session->finished);
    EXPECT_EQ(headings, (std::vector<std::string>{"Level 1/2", "Level 2/2"}));
    EXPECT_EQ(results_shown, (std::vector<std::string>{"1/2", "2/2"}));
    ASSERT_EQ(session->trials->size(), 2u);
    const TrialData& first = session->trials->at(0);
    const TrialData& second = session->trials->at(1);
    EXPECT_EQ(first.user_id, "P7");
    EXPECT_EQ(first.level_info.filename, record_name("a.txt"));
    EXPECT_EQ(second.level_info.play_order, 1);
    EXPECT_EQ(second.level_info.num_humans_h, 1);
    // The traits the menu answered with, not the ones it was given, each trial its own.
    EXPECT_EQ(first.traits.openness, 1);
    EXPECT_EQ(first.traits.neuroticism, -0.5);
    EXPECT_EQ(second.traits.neuroticism, -1);
    // The result screen is handed the very record that is kept, result included.
    ASSERT_EQ(records_shown.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i)
        EXPECT_EQ(trial_data_as_csv(records_shown[i]), trial_data_as_csv(session->trials->at(i)));
    EXPECT_EQ(records_shown[1].result.trial_score, second.result.trial_score);
    // The seeds come from the session's generator, in order.
    Rng expected(42);
    EXPECT_EQ(first.seed, static_cast<double>(expected.rng_irandom(std::int64_t{1} << 32)));
    EXPECT_EQ(second.seed, static_cast<double>(expected.rng_irandom(std::int64_t{1} << 32)));
    EXPECT_DOUBLE_EQ(session->total_score, first.result.trial_score + second.result.trial_score);
    EXPECT_EQ(end_user, "P7");
    EXPECT_DOUBLE_EQ(end_total, session->total_score);
    ASSERT_TRUE(end_trials);
    EXPECT_EQ(end_trials->size(), 2u);
    // The autosave holds exactly what a save at the end would write.
    FileText saved = services.files->read(autosave, 1 << 20);
    ASSERT_TRUE(saved);
    EXPECT_EQ(*saved.text, trial_results_csv_text(*session->trials));
}

TEST_F(LocalSessionTest, WithoutTheResultMenuTrialsFollowEachOtherAndTheEndIsShown) {
    configs().show_trial_result_menu = false;
    context.screens = screens;
    auto session = local_session_start(context, {path("a.txt"), path("b.txt")}, "P", Rng(1));
    run_until_done(*session);
    EXPECT_TRUE(session->finished);
    EXPECT_TRUE(results_shown.empty());
    EXPECT_EQ(end_user, "P");
}

// The saved results keep one line per level; the autosave, which only grows, keeps both runs.
TEST_F(LocalSessionTest, ARerunReplacesTheLevelsRecordAndTheAutosaveKeepsBoth) {
    context.screens = screens;
    int answers = 0;
    context.screens.show_trial_result = [&](const TrialData&, std::size_t) {
        return promise_resolve(++answers == 1 ? TrialResultChoice::play_again
                                              : TrialResultChoice::next_level);
    };
    auto session = local_session_start(context, {path("a.txt")}, "P", Rng(5), make_autosave("P"));
    run_until_done(*session);
    ASSERT_TRUE(session->finished);
    EXPECT_EQ(answers, 2);
    ASSERT_EQ(session->trials->size(), 1u);
    Rng seeds(5);
    const double first_seed = static_cast<double>(seeds.rng_irandom(std::int64_t{1} << 32));
    EXPECT_EQ(session->trials->at(0).seed,
              static_cast<double>(seeds.rng_irandom(std::int64_t{1} << 32)));
    EXPECT_DOUBLE_EQ(session->total_score, session->trials->at(0).result.trial_score);

    TrialData first_run = session->trials->at(0);
    first_run.seed = first_seed;
    first_run.traits.neuroticism = -0.5;  // each run's traits are its own menu's answer
    FileText saved = services.files->read(session->autosave->path(), 1 << 20);
    ASSERT_TRUE(saved);
    EXPECT_EQ(*saved.text, trial_data_as_csv_headers() + trial_data_as_csv(first_run) +
                               trial_data_as_csv(session->trials->at(0)));
}

TEST_F(LocalSessionTest, ALevelThatCannotBeLoadedStopsTheSessionAndKeepsWhatWasPlayed) {
    context.screens = screens;
    auto session = local_session_start(context, {path("a.txt"), path("missing.txt")}, "P", Rng(3),
                                       make_autosave("P"));
    const std::string autosave = session->autosave->path();
    run_until_done(*session);
    EXPECT_TRUE(session->failed);
    EXPECT_FALSE(session->finished);
    EXPECT_TRUE(end_user.empty());  // no end menu after a failure
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_NE(problems[0].find("missing.txt"), std::string::npos);
    EXPECT_NE(problems[0].find(autosave), std::string::npos);
    EXPECT_TRUE(capture.contains("missing.txt"));
    FileText saved = services.files->read(autosave, 1 << 20);
    ASSERT_TRUE(saved);
    EXPECT_EQ(*saved.text, trial_results_csv_text(*session->trials));
    EXPECT_EQ(session->trials->size(), 1u);
}

TEST_F(LocalSessionTest, BackslashesInLevelNamesBecomeSlashes) {
    EXPECT_EQ(_string_replace_backslashes_with_forward_slashes("levels\\a\\b.txt"),
              "levels/a/b.txt");
    EXPECT_EQ(session_traits_heading(localization, 2, 5), "Level 2/5");
}

// Sessions started in the same second in one folder each get a file of their own; a folder
// that cannot be written is refused before anything is played, naming the file.
TEST(SessionAutosave, NamesNeverCollideAndAnUnwritableFolderIsRefused) {
    testing::ScratchDirectory folder{"session_autosave"};
    std::string error;
    auto first = session_autosave_create(folder.path(), "P 1", "20240307-090541", error);
    auto second = session_autosave_create(folder.path(), "P 1", "20240307-090541", error);
    ASSERT_TRUE(first && second) << error;
    EXPECT_EQ(std::filesystem::path(first->path()).filename(), "session-P_1-20240307-090541.csv");
    EXPECT_EQ(std::filesystem::path(second->path()).filename(),
              "session-P_1-20240307-090541-2.csv");
    TrialData record;
    record.seed = 9;
    EXPECT_EQ(session_autosave_append(*second, record), "");
    DiskFiles files;
    EXPECT_EQ(*files.read(first->path(), 1 << 20).text, trial_data_as_csv_headers());
    EXPECT_EQ(*files.read(second->path(), 1 << 20).text,
              trial_data_as_csv_headers() + trial_data_as_csv(record));

    const auto missing = folder.path() / "gone";
    EXPECT_FALSE(session_autosave_create(missing, "P", "20240307-090541", error));
    EXPECT_NE(error.find((missing / "session-P-20240307-090541.csv").string()), std::string::npos)
        << error;
    EXPECT_NE(error.find("No such file"), std::string::npos) << error;
}

TEST(SaveTrialResults, WritesTheChosenFileAndNothingWhenCancelledOrUnwritable) {
    GcScope collector;
    testing::ScratchDirectory folder{"save_results"};
    ScriptedDialogs dialogs;
    dialogs.echo_messages_to_stderr = false;
    DiskFiles files;
    auto trials = std::make_shared<std::vector<TrialData>>(2);
    (*trials)[1].seed = 7;
    const std::string target = (folder.path() / "out.csv").string();

    dialogs.answers = {target};
    Promise<std::optional<std::string>> saved = save_trial_results_as_csv(dialogs, files, trials);
    testing::let_scripted_dialogs_answer(dialogs);
    ASSERT_TRUE(saved.is_fulfilled());
    EXPECT_EQ(saved.value(), target);
    FileText text = files.read(target, 1 << 20);
    ASSERT_TRUE(text);
    EXPECT_EQ(*text.text, trial_results_csv_text(*trials));
    EXPECT_EQ(dialogs.questions_asked.back(), "Save results as");

    dialogs.answers = {std::nullopt};
    auto cancelled = save_trial_results_as_csv(dialogs, files, trials);
    testing::let_scripted_dialogs_answer(dialogs);
    EXPECT_TRUE(cancelled.is_cancelled());

    // A folder in the file's place: a message, and the folder is untouched.
    dialogs.answers = {folder.path().string()};
    auto refused = save_trial_results_as_csv(dialogs, files, trials);
    testing::let_scripted_dialogs_answer(dialogs);
    EXPECT_EQ(refused.value(), std::nullopt);
    ASSERT_EQ(dialogs.messages_shown.size(), 1u);
    EXPECT_NE(dialogs.messages_shown[0].find(folder.path().string()), std::string::npos);
    EXPECT_TRUE(std::filesystem::is_directory(folder.path()));
}

}  // namespace
}  // namespace veldra
