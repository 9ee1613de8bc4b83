// The terminal's commands run on a played trial, as the terminal and the time-control panel run
// them: what each does, and its usage when the arguments are wrong.

#include "devtools/debug_commands.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "config/debug_settings.h"
#include "creatures/food.h"
#include "creatures/human_ai.h"
#include "creatures/human_player.h"
#include "creatures/monster.h"
#include "devtools/debug_menu.h"
#include "devtools/debug_tools.h"
#include "devtools/inspector.h"
#include "runtime/files.h"
#include "runtime/number_format.h"
#include "support/file_text.h"
#include "support/scratch_directory.h"
#include "ui/trial_views_fixture.h"

namespace veldra {
namespace {

class DebugCommandsTest : public testing::TrialViewsTest {
protected:
    std::vector<std::string> run(const std::string& line) { return run_debug_command(sim, line); }
    static std::vector<std::string> usage(const char* name) {
        return {std::string(DEBUG_ERROR_COLOR) + "Usage: " + find_debug_command(name)->usage +
                "[/c]"};
    }
    static bool says(const std::vector<std::string>& lines, std::string_view fragment) {
        for (const std::string& line : lines)
            if (line.find(fragment) != std::string::npos)
                return true;
        return false;
    }
    // Row 1 holds the player in cell (1, 1) and an AI human in cell (3, 1); (2, 1) and the
    // cells of row 2 are free; row 0 and 3 are holes.
    obj_trial& start(double speed = 1) {
        return start_trial(level_from_rows({"xxxxxx", "xp h x", "x    x", "xxxxxx"}), speed);
    }
};

TEST_F(DebugCommandsTest, WrongArgumentsPrintTheUsageAndUnknownCommandsPointToHelp) {
    start();
    const std::pair<const char*, const char*> wrong[] = {
        {"speed", "speed"},
        {"speed fast", "speed"},
        {"speed 0.1", "speed"},
        {"speed 17", "speed"},
        {"speed 2 3", "speed"},
        {"pause now", "pause"},
        {"resume 2", "resume"},
        {"step 0", "step"},
        {"step -2", "step"},
        {"step 1.5", "step"},
        {"step 1 2", "step"},
        {"step_decision 1", "step_decision"},
        {"fast_forward x", "fast_forward"},
        {"reload now", "reload"},
        {"spawn", "spawn"},
        {"spawn dragon", "spawn"},
        {"spawn monster 2", "spawn"},
        {"spawn food a b", "spawn"},
        {"kill", "kill"},
        {"kill Human", "kill"},
        {"kill Human 1 2", "kill"},
        {"teleport 2", "teleport"},
        {"teleport x y", "teleport"},
        {"print", "print"},
        {"inspect", "inspect"},
        {"inspect follow", "inspect"},
        {"eval trial_score 1 2", "eval"},
        {"eval trial_score a 0 0 0 0", "eval"},
        {"eval trial_score 0 0 0 0 0 0 0", "eval"},
        {"help a b", "help"},
    };
    for (const auto& [line, name] : wrong)
        EXPECT_EQ(run(line), usage(name)) << line;
    const auto unknown = run("jump 3");
    ASSERT_EQ(unknown.size(), 1u);
    EXPECT_TRUE(says(unknown, "Unknown command \"jump\"")) << unknown[0];
    EXPECT_TRUE(says(unknown, "help"));
    EXPECT_TRUE(run("   ").empty());
}

TEST_F(DebugCommandsTest, HelpListsEveryCommandAndExplainsOne) {
    const auto all = run("help");
    ASSERT_EQ(all.size(), debug_commands().size());
    for (const DebugCommand& command : debug_commands()) {
        EXPECT_TRUE(says(all, command.usage)) << command.name;
        EXPECT_TRUE(says(all, command.help)) << command.name;
    }
    const auto step = run("help step");
    ASSERT_EQ(step.size(), 2u);
    EXPECT_TRUE(says(step, "step [N]"));
    EXPECT_EQ(step[1], find_debug_command("step")->help);
    EXPECT_TRUE(says(run("help fly"), "Unknown command \"fly\""));
}

// The developer's page lists what help lists, so neither can drift from the table.
TEST(DebugCommandsDocs, EveryCommandIsOnTheDevelopersPageWithItsUsageAndHelp) {
    const std::string page = testing::text_of(std::string(VELDRA_SOURCE_DIR) + "/docs/devtools.md");
    ASSERT_FALSE(page.empty());
    for (const DebugCommand& command : debug_commands()) {
        std::string usage = command.usage;
        // Markdown tables escape the bar of "monster|food".
        for (std::size_t at = usage.find('|'); at != std::string::npos;
             at = usage.find('|', at + 2))
            usage.replace(at, 1, "\\|");
        EXPECT_NE(page.find("| `" + usage + "` | " + command.help + " |"), std::string::npos)
            << command.name;
    }
}

TEST_F(DebugCommandsTest, SpeedPauseResumeAndFastForwardChangeTheTrialsClock) {
    EXPECT_TRUE(says(run("pause"), "No trial is running"));
    obj_trial& trial = start(1);
    EXPECT_EQ(run("speed 4"), std::vector<std::string>{"Speed x4."});
    frames(2);
    EXPECT_EQ(trial.ticker.spent_ticks, 8);
    EXPECT_TRUE(says(run("pause"), "Paused at tick 8"));
    frames(3);
    EXPECT_EQ(trial.ticker.spent_ticks, 8);
    EXPECT_TRUE(says(run("resume"), "speed x4"));
    frames(1);
    EXPECT_EQ(trial.ticker.spent_ticks, 12);
    EXPECT_TRUE(says(run("speed 0.25"), "x0.25"));
    frames(4);
    EXPECT_EQ(trial.ticker.spent_ticks, 13);
    run("fast_forward");
    frames(1);
    EXPECT_TRUE(trial.result.has_value()) << "the rest of the trial in one frame";
    EXPECT_TRUE(says(run("speed 2"), "No trial is running"));
}

TEST_F(DebugCommandsTest, StepRunsExactlyNTicksAndStaysPaused) {
    obj_trial& trial = start(2);
    frames(1);
    ASSERT_EQ(trial.ticker.spent_ticks, 2);
    // Stepping a running trial pauses it first.
    EXPECT_EQ(run("step 5"), std::vector<std::string>{"Stepping 5 ticks from tick 2."});
    EXPECT_TRUE(trial.paused());
    frames(1);
    EXPECT_EQ(trial.ticker.spent_ticks, 7);
    frames(5);
    EXPECT_EQ(trial.ticker.spent_ticks, 7);
    run("step");
    frames(3);
    EXPECT_EQ(trial.ticker.spent_ticks, 8);
    EXPECT_TRUE(trial.paused());
    // Resuming goes back to the speed before the pause.
    run("resume");
    EXPECT_EQ(trial.game_speed, 2);
    // A step past the end ends the trial there.
    run("step 100000");
    frames(2);
    EXPECT_TRUE(trial.result.has_value());
    EXPECT_EQ(trial.state, TrialState::Reported);
}

TEST_F(DebugCommandsTest, StepDecisionStopsRightAfterAHumanDecides) {
    obj_trial& trial = start(1);
    frames(3);
    const auto* human = runtime.instance_find<obj_human_ai>(0);
    ASSERT_NE(human, nullptr);
    const Ticks cooldown = human->get_action_choose_cooldown_as_ticks();
    ASSERT_GT(cooldown, 2) << "the test needs ticks without a decision";
    for (int i = 0; i < 3; ++i) {
        const Ticks before = trial.ticker.spent_ticks;
        const std::uint64_t decisions = sim.world.decisions;
        EXPECT_TRUE(says(run("step_decision"), "Stepping to the next decision"));
        frames(1);
        EXPECT_TRUE(trial.paused());
        EXPECT_GT(sim.world.decisions, decisions);
        EXPECT_GT(trial.ticker.spent_ticks, before);
        EXPECT_LE(trial.ticker.spent_ticks, before + cooldown);
        // The one that decided did so in the last tick: its timer has not counted down yet.
        const auto* decider = runtime.find_as<obj_human>(sim.world.last_decision_by);
        ASSERT_NE(decider, nullptr);
        EXPECT_EQ(decider->action_choose_timer, cooldown) << "step " << i;
        EXPECT_TRUE(capture.contains("Stepped to a decision of"));
        const Ticks after = trial.ticker.spent_ticks;
        frames(2);
        EXPECT_EQ(trial.ticker.spent_ticks, after) << "stays paused";
    }
}

TEST_F(DebugCommandsTest, StepDecisionStopsAtTheTrialsEndWhenNoHumanDecidesAgain) {
    // Every human decides in the first tick, and not again for longer than a trial lasts.
    sim.configs.configs->action_update_frequency = 0.001;
    obj_trial& trial = start();
    frames(2);
    const std::uint64_t decisions = sim.world.decisions;
    ASSERT_GT(decisions, 0u);
    run("step_decision");
    frames(1);
    EXPECT_TRUE(capture.contains("No human made a decision before the trial ended."));
    EXPECT_TRUE(trial.result.has_value());
    EXPECT_EQ(sim.world.decisions, decisions);
}

TEST_F(DebugCommandsTest, SwitchListsAndFlipsTheDebugSwitchesAndSavesThem) {
    start();
    EXPECT_TRUE(says(run("switch"), "are not made"));
    DebugSettings debugs;
    MemoryFiles files;
    obj_debug_tools& tools = create_debug_tools(runtime, {sim, debugs, files});
    const std::vector<std::string> listed = run("switch");
    EXPECT_EQ(listed.size(), debug_switches().size() + 1);
    EXPECT_TRUE(says(listed, "show_sight_ranges on"));
    EXPECT_TRUE(says(listed, "workbench off"));

    EXPECT_EQ(run("switch show_sight_ranges"), std::vector<std::string>{"show_sight_ranges off"});
    EXPECT_FALSE(debugs.show_sight_ranges);
    const auto saved = _load_debug_settings_from_file(files, DEBUG_SETTINGS_PATH);
    ASSERT_TRUE(saved);
    EXPECT_FALSE(saved->show_sight_ranges);
    EXPECT_TRUE(saved->show_ids);
    run("switch show_sight_ranges on");
    EXPECT_TRUE(debugs.show_sight_ranges);
    run("switch show_log off");
    run("switch show_log off");
    EXPECT_FALSE(debugs.show_log) << "off stays off";

    run("switch workbench");
    EXPECT_TRUE(tools.workbench_open);
    run("switch workbench off");
    EXPECT_FALSE(tools.workbench_open);

    EXPECT_TRUE(says(run("switch show_everything"), "No switch is called"));
    EXPECT_EQ(run("switch show_ids maybe"), usage("switch"));
    EXPECT_EQ(run("switch show_ids on now"), usage("switch"));
    EXPECT_TRUE(debugs.show_ids);
}

TEST_F(DebugCommandsTest, SpawnKillTeleportAndPrintActOnTheTrialsCreatures) {
    obj_trial& trial = start(1);
    run("pause");
    const std::size_t monsters = runtime.instance_number<obj_monster>();
    const auto spawned = run("spawn monster 2 2");
    ASSERT_EQ(runtime.instance_number<obj_monster>(), monsters + 1);
    const obj_monster* monster = runtime.instance_find<obj_monster>(monsters);
    EXPECT_EQ(monster->x, 2 * 64 + 32);
    EXPECT_EQ(monster->y, 2 * 64 + 32);
    EXPECT_TRUE(says(spawned, "cell (2, 2)")) << spawned[0];
    run("spawn food 4 2");
    ASSERT_EQ(runtime.instance_number<obj_food>(), 1u);
    EXPECT_EQ(runtime.instance_find<obj_food>(0)->x, 4 * 64 + 32);
    // By default, the cell under the mouse.
    const ScreenPoint mouse = views(trial)->camera.world_to_screen(3 * 64 + 10, 2 * 64 + 50);
    views(trial)->controller.mouse_x = mouse.x;
    views(trial)->controller.mouse_y = mouse.y;
    run("spawn food");
    ASSERT_EQ(runtime.instance_number<obj_food>(), 2u);
    EXPECT_EQ(runtime.instance_find<obj_food>(1)->x, 3 * 64 + 32);
    EXPECT_EQ(runtime.instance_find<obj_food>(1)->y, 2 * 64 + 32);
    EXPECT_TRUE(says(run("spawn monster 0 0"), "Nothing can stand in cell (0, 0)"));
    EXPECT_TRUE(says(run("spawn monster 9 9"), "outside the level"));
    EXPECT_EQ(runtime.instance_number<obj_monster>(), monsters + 1);

    const InstanceId id = monster->id();
    EXPECT_TRUE(says(run("kill Monster " + std::to_string(id)), "Killed"));
    EXPECT_FALSE(runtime.instance_exists(id));
    EXPECT_TRUE(says(run("kill " + std::to_string(id)), "No creature or food has id"));

    obj_human_player& player = *runtime.instance_find<obj_human_player>(0);
    EXPECT_TRUE(says(run("teleport 0 1"), "not free"));
    EXPECT_TRUE(says(run("teleport 3 1"), "not free")) << "the AI human stands there";
    EXPECT_TRUE(says(run("teleport 4 2"), "not free")) << "food lies there";
    EXPECT_EQ(player.x, 64 + 32);
    EXPECT_TRUE(says(run("teleport 1 2"), "cell (1, 2)"));
    EXPECT_EQ(player.x, 64 + 32);
    EXPECT_EQ(player.y, 2 * 64 + 32);
    EXPECT_EQ(player.x_on_previous_tick, player.x);

    const auto* human = runtime.instance_find<obj_human_ai>(0);
    const auto printed = run("print Human " + std::to_string(human->id()));
    EXPECT_TRUE(says(printed, "cell (3, 1)"));
    EXPECT_TRUE(says(printed, "energy " + number_to_string(human->energy)));
    EXPECT_TRUE(says(printed, "action "));
    EXPECT_TRUE(says(printed, "traits O " + number_to_string(human->personality_traits.openness)));
    EXPECT_TRUE(says(run("print 999999"), "No creature or food has id"));
}

TEST_F(DebugCommandsTest, InspectSelectsACreatureInTheInspectorAndMayFollowIt) {
    start();
    const auto* human = runtime.instance_find<obj_human_ai>(0);
    const std::string id = std::to_string(human->id());
    EXPECT_TRUE(says(run("inspect " + id), "inspector is part of the developer tools"));
    DebugSettings debugs;
    MemoryFiles files;
    create_debug_tools(runtime, {sim, debugs, files});
    const auto* inspector = runtime.instance_find<obj_inspector>(0);
    EXPECT_TRUE(says(run("inspect Human " + id), "Inspecting"));
    EXPECT_EQ(inspector->selected(), human->id());
    EXPECT_FALSE(inspector->follow);
    run("inspect " + id + " follow");
    EXPECT_TRUE(inspector->follow);
    EXPECT_TRUE(says(run("inspect 999999"), "No creature has id"));
    EXPECT_EQ(inspector->selected(), human->id());
}

TEST_F(DebugCommandsTest, EvalEvaluatesAFormulaWithTheGivenTraitsAndEnergy) {
    const PersonalityTraits traits{1, 0.5, 0, 0, 0};
    EXPECT_EQ(run("eval human_sight_range 1 0.5 0 0 0")[0],
              "human_sight_range = " + number_to_string(sim.configs->human_sight_range(traits)));
    EXPECT_EQ(run("eval trial_score 1 0.5 0 0 0 0.25")[0],
              "trial_score = " + number_to_string(sim.configs->trial_score(traits, 0.25)));
    EXPECT_TRUE(says(run("eval trial_time 0 0 0 0 0"), "not a formula"));
    EXPECT_TRUE(says(run("eval no_such_key 0 0 0 0 0"), "not a formula"));
}

TEST_F(DebugCommandsTest, ReloadKeepsTheOldConfigurationWhenTheFilesFail) {
    testing::ScratchDirectory folder("reload");
    const std::string custom = (folder.path() / "custom.json").string();
    const auto write = [&](const std::string& text) { std::ofstream(custom) << text; };
    write(R"({"trial_time": 42})");
    ASSERT_TRUE(reload_game_configurations(sim.configs, sim.files, custom));
    ASSERT_EQ(sim.configs->trial_time, 42);

    write(R"({"trial_time": "soon"})");
    EXPECT_TRUE(says(run("reload"), "the old configuration stays"));
    EXPECT_EQ(sim.configs->trial_time, 42);
    EXPECT_EQ(sim.configs.loaded_paths.size(), 2u);
    EXPECT_FALSE(sim.configs.custom_failed);
    EXPECT_TRUE(capture.contains("Failed to load custom configs"));

    write(R"({"trial_time": 50})");
    const auto reloaded = run("reload");
    EXPECT_TRUE(says(reloaded, "Reloaded")) << reloaded[0];
    EXPECT_TRUE(says(reloaded, "custom.json"));
    EXPECT_EQ(sim.configs->trial_time, 50);
}

}  // namespace
}  // namespace veldra
