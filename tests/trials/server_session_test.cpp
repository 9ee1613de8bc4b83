#include "trials/server_session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "async/promise_event_loop.h"
#include "config/game_configurations.h"
#include "config/localization.h"
#include "net/obj_api.h"
#include "net/outbox.h"
#include "runtime/gc.h"
#include "runtime/log.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "serial/json.h"
#include "support/scoped_environment.h"
#include "support/scratch_directory.h"
#include "support/scripted_http.h"
#include "trials/game_systems.h"
#include "trials/session_autosave.h"
#include "trials/simulation_state.h"

namespace veldra {
namespace {

// Three small levels, a session whose screens are recorded, and a server played by the test:
// every request is answered after the frame that made it, by `respond`, which keeps the list
// of submitted levels as a server would. Trials run at game speed -1: each ends in one frame.
class ServerSessionTest : public ::testing::Test {
protected:
    testing::ScopedEnvironment data_folder = testing::data_folder_is_source_tree();

    void SetUp() override {
        auto scripted = std::make_unique<testing::ScriptedHttp>();
        http = scripted.get();
        services.http = std::move(scripted);
        initialize_game_systems(sim);
        ASSERT_TRUE(reload_game_configurations(sim.configs, sim.files, ""));
        sim.configs.configs->trial_time = 0.5;
        sim.configs.configs->game_speed = -1;
        sim.configs.configs->show_trial_result_menu = true;
        Language english;
        english.lines["TraitMenu_Title"] = "Level TRIAL_NUMBER";
        localization.active = english;
        start_promise_event_loop(runtime);
        runtime.start(runtime.room_add({"rm_game", nullptr}));
        for (const char* name : {"a.txt", "b.txt", "c.txt"})
            std::ofstream(path(name)) << "xxxxxx\nxp  hx\nxxxxxx\n";
        api = &runtime.instance_create_depth<obj_api>(0, 0, 0);
        api->initialize("http://127.0.0.1/", "game", "pw");

        SessionScreens screens;
        screens.show_trial_result = [this](const TrialData& trial, std::size_t count) {
            results_shown.push_back(std::to_string(trial.level_info.play_order + 1) + "/" +
                                    std::to_string(count));
            return promise_resolve(TrialResultChoice::next_level);
        };
        screens.show_end = [this](const std::string& user, double total,
                                  std::shared_ptr<const std::vector<TrialData>> trials) {
            end_user = user;
            end_total = total;
            end_had_records = trials != nullptr;
        };
        screens.show_problem = [this](const std::string& text) { problems.push_back(text); };
        sim.ask_personality_traits = [this](const PersonalityTraits& offered,
                                            const std::string& heading) {
            headings.push_back(heading);
            offered_traits.push_back(offered);
            PersonalityTraits chosen = offered;
            chosen.openness = 0.5 * static_cast<double>(headings.size());
            return promise_resolve(chosen);
        };
        context = std::make_unique<ServerSessionContext>(ServerSessionContext{
            .session = SessionContext{sim, localization, screens},
            .api = *api,
            .set_loading_status = [this](const std::string& text) { statuses.push_back(text); },
            .clear_loading_status = [this] { statuses.push_back("-"); },
            .show_message = [this](const std::string& text) { messages.push_back(text); },
            .outbox = nullptr,
            .wait_before_retry = {}});
    }
    void TearDown() override { runtime.shutdown(); }

    std::string path(const std::string& name) const { return (folder.path() / name).string(); }
    // As a record names the level: with forward slashes on every system.
    std::string record_name(const std::string& name) const {
        return (folder.path() / name).generic_string();
    }

    // What the test's server answers to one request.
    std::pair<int, std::string> respond(const HttpRequest& request) {
        const std::string& url = request.url;
        if (url.find("/levelsPerUser/P7") != std::string::npos) {
            if (refuse_levels)
                return {404, R"({"error": "unknown participant"})"};
            std::vector<Value> names(submitted.begin(), submitted.end());
            return {200, json_stringify(Value::array(std::move(names)), false)};
        }
        if (url.find("/trialsPerUser/P7?fields=level_info,result") != std::string::npos)
            return {200, earlier_trials};
        if (url.find("/trials") != std::string::npos && request.method == "POST") {
            if (refuse_records)
                return {500, R"({"error": "database"})"};
            const auto record = json_parse(request.body);
            posted.push_back(*record);
            submitted.push_back(record->get("level_info").get("filename").as_string());
            return {201, R"({"status":"stored"})"};
        }
        return {404, ""};
    }
    void run_until_done(const ServerSession& session) {
        std::size_t answered = 0;
        for (int frame = 0; frame < 600 && !session.finished && !session.failed; ++frame) {
            runtime.run_frame();
            services.clock->frame_done();
            for (; answered < http->requests.size(); ++answered) {
                const auto [status, body] = respond(http->requests[answered]);
                runtime.raise_async_http(http->answer(http->ids[answered], status, body));
            }
        }
    }
    std::shared_ptr<ServerSession> start(std::vector<std::string> levels) {
        std::string error;
        auto autosave = session_autosave_create(folder.path(), "P7", "20240307-090541", error);
        EXPECT_TRUE(autosave) << error;
        auto session = make_server_session(std::move(levels), "P7", Rng(42), std::move(autosave));
        server_session_start(*context, session);
        return session;
    }

    GcScope collector;
    Services services;
    Runtime runtime{services};
    SimulationState sim{runtime};
    Localization localization;
    LogCapture capture;
    testing::ScratchDirectory folder{"server-session"};
    testing::ScriptedHttp* http = nullptr;
    obj_api* api = nullptr;
    std::unique_ptr<ServerSessionContext> context;

    std::vector<std::string> submitted;  // level files the server has records of
    std::string earlier_trials = "[]";
    bool refuse_levels = false;
    bool refuse_records = false;
    std::vector<Value> posted;

    std::vector<std::string> statuses, headings, results_shown, problems, messages;
    std::vector<PersonalityTraits> offered_traits;
    std::string end_user;
    double end_total = -1;
    bool end_had_records = true;
};

// The server has the second level (spelled with backslashes): the first and the third are
// played, with their places in the list, the first's traits preset for the third, and the end
// shows the total of all three.
TEST_F(ServerSessionTest, PlaysTheLevelsNotYetSubmittedAndCarriesTraitsAndTotal) {
    std::string b_with_backslashes = path("b.txt");
    std::replace(b_with_backslashes.begin(), b_with_backslashes.end(), '/', '\\');
    submitted = {b_with_backslashes};
    Value record = Value::make_struct();
    Value info = Value::make_struct();
    info.set("filename", Value(b_with_backslashes));
    record.set("level_info", info);
    Value result = Value::make_struct();
    result.set("trial_score", Value(7.0));
    record.set("result", result);
    earlier_trials = json_stringify(Value::array({record}), false);

    auto session = start({path("a.txt"), path("b.txt"), path("c.txt")});
    run_until_done(*session);
    ASSERT_TRUE(session->finished) << (problems.empty() ? "" : problems[0]);
    EXPECT_EQ(headings, (std::vector<std::string>{"Level 1/3", "Level 3/3"}));
    EXPECT_EQ(results_shown, (std::vector<std::string>{"1/3", "3/3"}));
    ASSERT_EQ(offered_traits.size(), 2u);
    EXPECT_EQ(offered_traits[0], PersonalityTraits{});
    EXPECT_EQ(offered_traits[1].openness, 0.5);  // what was chosen in the first trial
    ASSERT_EQ(posted.size(), 2u);
    EXPECT_EQ(posted[0].get("level_info").get("filename").as_string(), record_name("a.txt"));
    EXPECT_EQ(posted[0].get("level_info").get("play_order").as_number(), 0);
    EXPECT_EQ(posted[1].get("level_info").get("filename").as_string(), record_name("c.txt"));
    EXPECT_EQ(posted[1].get("level_info").get("play_order").as_number(), 2);
    EXPECT_EQ(posted[1].get("user_id").as_string(), "P7");
    EXPECT_EQ(end_user, "P7");
    EXPECT_FALSE(end_had_records);
    EXPECT_DOUBLE_EQ(end_total, 7 + posted[0].get("result").get("trial_score").as_number() +
                                    posted[1].get("result").get("trial_score").as_number());
    EXPECT_EQ(statuses,
              (std::vector<std::string>{"Loading...", "-", "Submitting...", "-", "Loading...", "-",
                                        "Submitting...", "-", "Loading...", "-"}));
    // Both records are on disk too.
    FileText saved = services.files->read(session->autosave->path(), 1 << 20);
    ASSERT_TRUE(saved);
    EXPECT_EQ(std::count(saved.text->begin(), saved.text->end(), '\n'), 3);
}

TEST_F(ServerSessionTest, ARefusedRecordStopsTheSessionAndStaysInTheAutosave) {
    refuse_records = true;
    auto session = start({path("a.txt"), path("b.txt")});
    run_until_done(*session);
    EXPECT_TRUE(session->failed);
    EXPECT_EQ(messages, (std::vector<std::string>{"Failed to submit trial data."}));
    EXPECT_EQ(headings.size(), 1u);  // no second trial
    EXPECT_TRUE(results_shown.empty());
    EXPECT_TRUE(capture.contains("HTTP error: 500"));
    FileText saved = services.files->read(session->autosave->path(), 1 << 20);
    ASSERT_TRUE(saved);
    EXPECT_NE(saved.text->find(record_name("a.txt")), std::string::npos);
}

TEST_F(ServerSessionTest, WithoutTheListOfSubmittedLevelsNothingIsPlayed) {
    refuse_levels = true;
    auto session = start({path("a.txt")});
    run_until_done(*session);
    EXPECT_TRUE(session->failed);
    EXPECT_TRUE(headings.empty());
    EXPECT_TRUE(capture.contains("Failed to get user data."));
    EXPECT_EQ(problems, (std::vector<std::string>{"Failed to get user data."}));
}

// The completion link leads away from the game: while a record of the participant waits in the
// outbox, the end screen waits too, the loading status says how many wait, and the sending is
// tried again until the server takes them.
TEST_F(ServerSessionTest, TheEndWaitsUntilTheServerHasEveryRecordThatWaitsInTheOutbox) {
    auto outbox = std::make_shared<Outbox>(folder.path() / "outbox");
    std::string error;
    ASSERT_TRUE(outbox->put({.user_id = "P7", .level_file = "a.txt", .seed = 3},
                            R"({"user_id":"P7","level_info":{"filename":"a.txt"}})", error))
        << error;
    context->outbox = outbox;
    int retries = 0;
    context->wait_before_retry = [&] {
        // The server comes back after the second pause.
        if (++retries == 2)
            refuse_records = false;
        return promise_resolve();
    };
    refuse_records = true;
    submitted = {"a.txt", "b.txt", "c.txt"};
    auto session = start({"a.txt", "b.txt", "c.txt"});
    run_until_done(*session);

    ASSERT_TRUE(session->finished);
    EXPECT_EQ(retries, 2);
    EXPECT_TRUE(outbox->waiting("P7").empty());
    EXPECT_EQ(std::count(statuses.begin(), statuses.end(),
                         "1 trial result is still waiting to be sent to the server. Please keep "
                         "the game open; it keeps trying."),
              2);
    EXPECT_EQ(statuses.back(), "-");
    EXPECT_EQ(std::count_if(http->requests.begin(), http->requests.end(),
                            [](const HttpRequest& request) { return request.method == "POST"; }),
              3);
    EXPECT_EQ(posted.size(), 1u);
    EXPECT_EQ(end_user, "P7");
}

}  // namespace
}  // namespace veldra
