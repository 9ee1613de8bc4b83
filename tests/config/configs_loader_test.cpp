#include "config/configs_loader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "config/configuration_choice.h"
#include "config/debug_settings.h"
#include "config/program_parameters.h"
#include "runtime/dialogs.h"
#include "runtime/files.h"
#include "runtime/gc.h"
#include "runtime/log.h"
#include "runtime/paths.h"
#include "runtime/process_state.h"
#include "support/scratch_directory.h"
#include "support/scripted_answers.h"
#include "util/text.h"

namespace veldra {
namespace {

std::string shipped_configuration() {
    std::ifstream in(std::string(VELDRA_SOURCE_DIR) + "/datafiles/configurations.json");
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

class ConfigsLoaderTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(root / "datafiles");
        process_state().program_directory = root;
        initialize_configs(configs);
    }
    std::string write(const std::string& name, const std::string& text) {
        auto path = root / "datafiles" / name;
        std::ofstream(path) << text;
        return path.string();
    }
    // The shipped file with one line replaced.
    std::string shipped_with(const std::string& from, const std::string& to) {
        std::string text = shipped_configuration();
        EXPECT_NE(text.find(from), std::string::npos) << from;
        return string_replace_all(text, from, to);
    }
    // The start-up question's answer: the `config` parameter, else the (scripted) dialog's.
    std::string asked_custom_name() {
        Promise<std::string> name = ask_custom_configuration_name(params, debugs, dialogs, files);
        testing::let_scripted_dialogs_answer(dialogs);
        EXPECT_TRUE(name.is_fulfilled());
        return name.value();
    }
    const LogCapture::Line* first_error() const {
        for (const auto& line : capture.lines)
            if (line.level == LogLevel::error)
                return &line;
        return nullptr;
    }
    void TearDown() override { process_state().program_directory.clear(); }

    GcScope collector;
    LogCapture capture;
    ExpressionGlobals globals;
    ConfigsState configs;
    ProgramParameters params;
    DebugSettings debugs;
    ScriptedDialogs dialogs;
    DiskFiles files;
    testing::ScratchDirectory scratch{"veldra_configs_test"};
    std::filesystem::path root = scratch.path();
};

TEST_F(ConfigsLoaderTest, ShippedFileLoadsEveryKeyAndFormulasEvaluate) {
    const std::string path = write("configurations.json", shipped_configuration());
    auto loaded = _load_game_configurations_from_file(files, path, true, globals);
    ASSERT_TRUE(loaded) << (capture.lines.empty() ? "" : capture.lines[0].message);
    EXPECT_EQ(loaded->trial_time, 60);
    EXPECT_EQ(loaded->levels.size(), 10u);
    PersonalityTraits traits{0, 1, 0, 0, 0};
    // Conscientiousness raises the pull of food when energy is low.
    EXPECT_GT(loaded->weight_approach_food(traits, 0.2),
              loaded->weight_approach_food(PersonalityTraits{}, 0.2));
    EXPECT_EQ(loaded->current_action_weight_modifier(traits, 1, 2), 2 * 2.0);
    EXPECT_EQ(loaded->target_weight_approach_food(traits, 1, 0.25), 1.75);
    EXPECT_EQ(loaded->trial_score(traits, 0.5, 1), 75);
    int methods = 0;
    visit_config_fields(*loaded, [&](std::string_view, std::string_view type, ConfigRule, auto&) {
        methods += type == "method";
    });
    EXPECT_EQ(methods, 38);
}

TEST_F(ConfigsLoaderTest, EachFailureHasItsText) {
    const std::string missing = (root / "datafiles" / "nope.json").string();
    EXPECT_FALSE(_load_game_configurations_from_file(files, missing, true, globals));
    EXPECT_EQ(first_error()->message, "Configuration file doesn't exist (" + missing + ").");

    struct Case {
        std::string text;
        std::string message;  // {path} stands for the file
    };
    const std::vector<Case> cases = {
        {"{ not json", "Failed to read the configuration file \"{path}\"."},
        {"{\n  \"a\": 1,\n  \"b\": }", "Failed to read the configuration file \"{path}\"."},
        {"[1, 2]", "Configuration file \"{path}\" is in an unexpected format: array."},
        {"\"text\"", "Configuration file \"{path}\" is in an unexpected format: string."},
        {shipped_with("\"game_speed\": 1,", "\"game_speed\": \"1\","),
         "Configuration file \"{path}\" variable \"game_speed\" is of an unexpected type "
         "\"string\". Expected \"number\"."},
        {shipped_with("    \"trial_time\": 60, // seconds of simulated time per trial\n", ""),
         "Configuration file \"{path}\" doesn't define the variable \"trial_time\"."},
    };
    for (const auto& c : cases) {
        capture.lines.clear();
        const std::string path = write("broken.json", c.text);
        EXPECT_FALSE(_load_game_configurations_from_file(files, path, true, globals));
        ASSERT_NE(first_error(), nullptr);
        EXPECT_EQ(first_error()->message, string_replace_all(c.message, "{path}", path));
    }
}

TEST_F(ConfigsLoaderTest, MalformedOrHostileFilesAreNamedWithWhereAndWhy) {
    struct Case {
        std::string text;
        std::string detail;  // the second error line, after the file's path
    };
    const std::vector<Case> cases = {
        {"{\n  \"a\": 1, // fine\n  \"b\": }",
         "\", line 3, column 8: syntax error while parsing value - unexpected '}'; expected '[', "
         "'{', or a literal."},
        {"{\"trial_time\": 1e999}", "\", number overflow parsing '1e999'."},
        {"{\"a\": " + std::string(600, '[') + std::string(600, ']') + "}",
         "\", line 1, column 70: nested deeper than 64 levels."},
    };
    for (const auto& c : cases) {
        for (bool base : {true, false}) {
            capture.lines.clear();
            const std::string path = write("hostile.json", c.text);
            EXPECT_FALSE(_load_game_configurations_from_file(files, path, base, globals));
            ASSERT_GE(capture.lines.size(), 2u);
            EXPECT_EQ(capture.lines[1].message, "\"" + path + c.detail);
        }
    }
    // Not a regular file: refused with the reason, never read until memory runs out.
    capture.lines.clear();
    std::filesystem::create_directories(root / "datafiles" / "dir.json");
    EXPECT_FALSE(_load_game_configurations_from_file(
        files, (root / "datafiles" / "dir.json").string(), false, globals));
    EXPECT_TRUE(capture.contains("is a directory, not a file."));
}

TEST_F(ConfigsLoaderTest, ValuesOutsideTheirRuleAreRefusedWithKeyValueAndRule) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {R"({"game_speed": 0})",
         "variable \"game_speed\" must be from 0.01 to 1000 ticks per "
         "frame, or negative (the whole trial in one frame), not 0."},
        {R"({"game_speed": 1e-300})", "variable \"game_speed\" must be from 0.01"},
        {R"({"attack_frequency": 0})", "variable \"attack_frequency\" must be from 0.0001"},
        {R"({"human_energy_max": -1})",
         "variable \"human_energy_max\" must be more than 0, not -1."},
        {R"({"num_memory_slots": 1e300})", "variable \"num_memory_slots\" must be a whole number"},
        {R"({"num_memory_slots": 2.5})", "variable \"num_memory_slots\" must be a whole number"},
        {R"({"non_player_sound_volume": 1.5})", "must be from 0 to 1, not 1.5."},
        {R"({"trial_time": 1e12})", "variable \"trial_time\" must be from 0 to 86400"},
        {R"({"trial_time": -5})", "variable \"trial_time\" must be from 0 to 86400"},
        {R"({"options_openness": []})", "must list from 1 to 100 trait values, not []."},
        {R"({"options_openness": [1, "x"]})", "must list numbers only"},
        {R"({"ai_human_traits": [{"openness": [0, 1]}]})",
         "entry 0 must give \"conscientiousness\" as [low, high]"},
        {R"({"levels": ["a.txt", 3]})", "must list level file names (non-empty strings) only"},
    };
    for (const auto& [text, message] : cases) {
        capture.lines.clear();
        const std::string path = write("rules.json", text);
        EXPECT_FALSE(_load_game_configurations_from_file(files, path, false, globals)) << text;
        ASSERT_NE(first_error(), nullptr) << text;
        EXPECT_NE(first_error()->message.find(message), std::string::npos)
            << first_error()->message;
    }
    EXPECT_TRUE(_load_game_configurations_from_file(
        files,
        write("fine.json", R"({"game_speed": -1, "trial_time": 0.5, "num_memory_slots": 3})"),
        false, globals));
    // A monster that is more likely not to hit: a negative weight is never drawn, and allowed.
    EXPECT_TRUE(_load_game_configurations_from_file(
        files,
        write("fine.json",
              R"({"monster_fight_miss_weight": -1, "monster_fight_flee_weight": -0.5})"),
        false, globals))
        << (first_error() ? first_error()->message : "");
}

// What a custom file with these keys does to the shipped configuration: true when it loads.
class ConfigsFormulaCheckTest : public ConfigsLoaderTest {
protected:
    bool custom_loads(const std::string& json) {
        write("configurations.json", shipped_configuration());
        write("custom.json", json);
        capture.lines.clear();
        EXPECT_TRUE(reload_game_configurations(configs, files, "custom"));
        return !configs.custom_failed;
    }
    std::string first_error_text() const { return first_error() ? first_error()->message : ""; }
};

TEST_F(ConfigsFormulaCheckTest, FormulasGivingNoNumberForOfferedTraitsAreRefusedByKey) {
    struct Case {
        std::string json;
        std::vector<std::string> said;
    };
    const std::vector<Case> cases = {
        {R"j({"move_speed_explore": "0/0"})j",
         {"\"move_speed_explore\" (\"0/0\") gives NaN for O=-1, C=-1, E=-1, A=-1, N=-1:"}},
        {R"j({"human_exploration_range": "1/0"})j",
         {"\"human_exploration_range\" (\"1/0\") gives an infinity"}},
        // Only one offered value of one trait breaks it.
        {R"j({"weight_explore": "1 / (O - 1)"})j",
         {"\"weight_explore\"", "for O=1,", "ENERGY_LEVEL="}},
        {R"j({"trial_score": "100 / ENERGY_LEVEL"})j",
         {"\"trial_score\"", "ENERGY_LEVEL=0, TIME="}},
        {R"j({"target_weight_avoid_human": "log(DISTANCE)"})j", {"DISTANCE=0:"}},
        {R"j({"current_action_weight_modifier": "1 / WEIGHT"})j", {"WEIGHT=0"}},
        // A variable the key is not given reads NaN wherever its branch is taken.
        {R"j({"move_speed_explore": "O > 0 ? 2 + ENERGY_LEVEL : 2"})j",
         {"for O=1,", "It reads ENERGY_LEVEL, which this key's formula is not given"}},
        {R"j({"human_sight_range": "TIME * 64"})j", {"It reads TIME"}},
        // New options meet the base formulas as new formulas meet the base options.
        {R"j({"human_sight_range": "64 * sqrt(O + 1)", "options_openness": [-2, 0]})j",
         {"\"human_sight_range\"", "O=-2"}},
    };
    for (const Case& c : cases) {
        EXPECT_FALSE(custom_loads(c.json)) << c.json;
        for (const std::string& part : c.said)
            EXPECT_NE(first_error_text().find(part), std::string::npos) << c.json << "\n"
                                                                        << first_error_text();
        EXPECT_TRUE(capture.contains("Failed to load custom configs from"));
        // The base stays in effect, untouched by the refused file's keys.
        EXPECT_EQ(configs->options_openness.size(), 3u);
        EXPECT_EQ(configs->move_speed_explore.source(), "1.6 + 0.3 * O");
    }
}

TEST_F(ConfigsFormulaCheckTest, FormulasThatCanRunAreKept) {
    // A variable the key is not given, in a branch the offered traits never take.
    EXPECT_TRUE(custom_loads(R"({"move_speed_explore": "O > 5 ? ENERGY_LEVEL : 2"})"))
        << first_error_text();
    // Every variable its key is given, each at the values the game passes.
    EXPECT_TRUE(custom_loads(R"({"weight_explore": "ENERGY_LEVEL + O",
        "exchange_take_weight": "1 - ENERGY_LEVEL", "trial_score": "100 / TIME",
        "current_action_weight_modifier": "WEIGHT * ENERGY_LEVEL",
        "target_weight_approach_food": "1 - DISTANCE * ENERGY_LEVEL", "move_speed_explore": "2 + N"})"))
        << first_error_text();
    EXPECT_EQ(configs->trial_score(PersonalityTraits{}, 0, 0.5), 200);
    // Division by a trait that is never 0 among the options.
    EXPECT_TRUE(custom_loads(R"({"options_openness": [1, 2], "weight_explore": "1 / O"})"))
        << first_error_text();
}

TEST_F(ConfigsFormulaCheckTest, ABaseFileWithAFormulaGivingNoNumberDoesNotLoad) {
    write("configurations.json", shipped_with("\"move_speed_explore\": \"1.6 + 0.3 * O\"",
                                              "\"move_speed_explore\": \"0/0\""));
    EXPECT_FALSE(reload_game_configurations(configs, files, ""));
    EXPECT_NE(first_error_text().find("\"move_speed_explore\" (\"0/0\") gives NaN"),
              std::string::npos);
    EXPECT_TRUE(capture.contains("Failed to load main configs from"));
    EXPECT_FALSE(configs.loaded());
}

// The table of keys in docs/configuration.md says what the loader accepts: it must not drift.
TEST_F(ConfigsLoaderTest, TheDocumentedVariablesAndRulesAreTheProgramsOwn) {
    std::ifstream in(std::string(VELDRA_SOURCE_DIR) + "/docs/configuration.md");
    std::map<std::string, std::vector<std::string>> rows;
    for (std::string line; std::getline(in, line);) {
        if (!line.starts_with("| `"))
            continue;
        std::vector<std::string> cells;
        for (const std::string& cell : string_split(line, '|'))
            cells.push_back(string_trim(cell));
        if (cells.size() >= 8)
            rows[cells[1].substr(1, cells[1].size() - 2)] = cells;
    }
    const char* names[] = {"O", "C", "E", "A", "N", "ENERGY_LEVEL", "WEIGHT", "TIME", "DISTANCE"};
    GameConfigurations schema;
    int checked = 0;
    visit_config_fields(
        schema, [&](std::string_view key, std::string_view type, ConfigRule rule, auto&) {
            const auto row = rows.find(std::string(key));
            ASSERT_NE(row, rows.end()) << key;
            EXPECT_EQ(row->second[6], config_rule_text(rule)) << key;
            if (type == "method") {
                std::string sees;
                const ExprVarMask given = config_formula_variables(key);
                for (int v = 0; v < EXPR_VAR_COUNT; ++v)
                    if (expr_var_mask_has(given, static_cast<ExprVar>(v)))
                        sees += std::string(sees.empty() ? "" : v < 5 ? " " : ", ") + names[v];
                EXPECT_EQ(row->second[5], sees) << key;
            }
            ++checked;
        });
    EXPECT_EQ(checked, GAME_CONFIGURATION_KEY_COUNT);
}

TEST_F(ConfigsLoaderTest, FirstMissingKeyInSchemaOrderIsNamed) {
    std::string text = shipped_with("    \"levels\": [", "    \"levels_renamed\": [");
    text = string_replace_all(
        text,
        "    \"game_speed\": 1, // ticks per frame; negative runs the whole trial in one frame\n",
        "");
    const std::string path = write("broken.json", text);
    EXPECT_FALSE(_load_game_configurations_from_file(files, path, true, globals));
    EXPECT_NE(first_error()->message.find("\"game_speed\""), std::string::npos);
}

TEST_F(ConfigsLoaderTest, FormulaThatDoesNotCompileNamesKeyFileAndColumn) {
    const std::string path =
        write("broken.json", shipped_with("\"weight_explore\": \"max(0, 0.6 + 0.6 * O)\"",
                                          "\"weight_explore\": \"1 + * O\""));
    EXPECT_FALSE(_load_game_configurations_from_file(files, path, true, globals));
    const std::string& message = first_error()->message;
    EXPECT_NE(message.find("\"" + path + "\""), std::string::npos);
    EXPECT_NE(message.find("\"weight_explore\""), std::string::npos);
    EXPECT_NE(message.find("column 5"), std::string::npos) << message;
}

TEST_F(ConfigsLoaderTest, ReloadWithCustomOverlayAndFailuresKeepEarlierConfigs) {
    write("configurations.json", shipped_configuration());
    write("fast.json", "{\"trial_time\": 30, \"extra_key\": [1, 2]}");
    params.config = "  fast ";
    ASSERT_TRUE(reload_game_configurations(configs, files, asked_custom_name()));
    EXPECT_EQ(configs.get().trial_time, 30);
    EXPECT_EQ(configs.get().game_speed, 1);
    EXPECT_TRUE(configs.value("extra_key").is_array());
    EXPECT_TRUE(capture.contains("Loaded custom configurations from \""));

    // A broken base file leaves the loaded configuration in place.
    write("configurations.json", "{");
    capture.lines.clear();
    EXPECT_FALSE(reload_game_configurations(configs, files, asked_custom_name()));
    EXPECT_TRUE(capture.contains("Failed to load main configs from \""));
    EXPECT_EQ(configs.get().trial_time, 30);

    // A broken custom file leaves the base configuration in effect.
    write("configurations.json", shipped_configuration());
    write("fast.json", "{\"trial_time\": \"slow\"}");
    params.config = "fast.json";
    EXPECT_TRUE(reload_game_configurations(configs, files, asked_custom_name()));
    EXPECT_EQ(configs.get().trial_time, 60);
    EXPECT_TRUE(capture.contains("Failed to load custom configs from \"" +
                                 (root / "datafiles" / "fast.json").string() + "\"."));
}

// The base and a custom file come from the files handed in; one missing there is said not to
// exist, as one missing on the disk is.
TEST_F(ConfigsLoaderTest, ConfigurationsAreReadThroughTheGivenFiles) {
    MemoryFiles memory;
    const std::string base = make_included_file_filename("configurations.json");
    memory.files[base] = shipped_configuration();
    memory.files["memory_fast.json"] = "{\"trial_time\": 30}";
    ASSERT_TRUE(reload_game_configurations(configs, memory, "memory_fast"));
    EXPECT_EQ(configs.get().trial_time, 30);
    EXPECT_EQ(configs.loaded_paths, (std::vector<std::string>{base, "memory_fast.json"}));

    capture.lines.clear();
    EXPECT_FALSE(_load_game_configurations_from_file(memory, "absent.json", false, globals));
    ASSERT_NE(first_error(), nullptr);
    EXPECT_EQ(first_error()->message, "Configuration file doesn't exist (absent.json).");
}

TEST_F(ConfigsLoaderTest, NoCustomNameLoadsTheBaseOnly) {
    write("configurations.json", shipped_configuration());
    debugs.custom_config = "kept";
    // Headless, the question is cancelled: no custom file, and the stored answer stays.
    ASSERT_TRUE(reload_game_configurations(configs, files, asked_custom_name()));
    EXPECT_EQ(debugs.custom_config, "kept");
    EXPECT_TRUE(
        capture.contains("No custom configurations were loaded, because none were specified."));
    initialize_configs(configs);
    EXPECT_TRUE(capture.contains("called more than once"));
    EXPECT_TRUE(configs.loaded());
}

}  // namespace
}  // namespace veldra
