#include "config/configs_loader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "config/program_parameters.h"
#include "runtime/context.h"
#include "runtime/log.h"
#include "runtime/paths.h"
#include "support/scratch_directory.h"
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
        ctx().slot<Paths>().program_directory = root;
        initialize_configs();
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
    const LogCapture::Line* first_error() const {
        for (const auto& line : capture.lines)
            if (line.level == LogLevel::error)
                return &line;
        return nullptr;
    }
    Context context;
    ContextScope scope{context};
    LogCapture capture;
    testing::ScratchDirectory scratch{"veldra_configs_test"};
    std::filesystem::path root = scratch.path();
};

TEST_F(ConfigsLoaderTest, ShippedFileLoadsEveryKeyAndFormulasEvaluate) {
    const std::string path = write("configurations.json", shipped_configuration());
    auto loaded = _load_game_configurations_from_file(path, true);
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
    visit_config_fields(*loaded, [&](std::string_view, std::string_view type, auto&) {
        methods += type == "method";
    });
    EXPECT_EQ(methods, 38);
}

TEST_F(ConfigsLoaderTest, EachFailureHasItsText) {
    const std::string missing = (root / "datafiles" / "nope.json").string();
    EXPECT_FALSE(_load_game_configurations_from_file(missing, true));
    EXPECT_EQ(first_error()->message, "Configuration file doesn't exist (" + missing + ").");

    struct Case {
        std::string text;
        std::string message;  // {path} stands for the file
    };
    const std::vector<Case> cases = {
        {"{ not json", "Failed to read the configuration file \"{path}\"."},
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
        EXPECT_FALSE(_load_game_configurations_from_file(path, true));
        ASSERT_NE(first_error(), nullptr);
        EXPECT_EQ(first_error()->message, string_replace_all(c.message, "{path}", path));
    }
}

TEST_F(ConfigsLoaderTest, FirstMissingKeyInSchemaOrderIsNamed) {
    std::string text = shipped_with("    \"levels\": [", "    \"levels_renamed\": [");
    text = string_replace_all(
        text,
        "    \"game_speed\": 1, // ticks per frame; negative runs the whole trial in one frame\n",
        "");
    const std::string path = write("broken.json", text);
    EXPECT_FALSE(_load_game_configurations_from_file(path, true));
    EXPECT_NE(first_error()->message.find("\"game_speed\""), std::string::npos);
}

TEST_F(ConfigsLoaderTest, FormulaThatDoesNotCompileNamesKeyFileAndColumn) {
    const std::string path =
        write("broken.json", shipped_with("\"weight_explore\": \"max(0, 0.6 + 0.6 * O)\"",
                                          "\"weight_explore\": \"1 + * O\""));
    EXPECT_FALSE(_load_game_configurations_from_file(path, true));
    const std::string& message = first_error()->message;
    EXPECT_NE(message.find("\"" + path + "\""), std::string::npos);
    EXPECT_NE(message.find("\"weight_explore\""), std::string::npos);
    EXPECT_NE(message.find("column 5"), std::string::npos) << message;
}

TEST_F(ConfigsLoaderTest, ReloadWithCustomOverlayAndFailuresKeepEarlierConfigs) {
    write("configurations.json", shipped_configuration());
    write("fast.json", "{\"trial_time\": 30, \"extra_key\": [1, 2]}");
    program_params().config = "  fast ";
    ASSERT_TRUE(reload_game_configurations());
    EXPECT_EQ(configs().trial_time, 30);
    EXPECT_EQ(configs().game_speed, 1);
    EXPECT_TRUE(config_value("extra_key").is_array());
    EXPECT_TRUE(capture.contains("Loaded custom configurations from \""));

    // A broken base file leaves the loaded configuration in place.
    write("configurations.json", "{");
    capture.lines.clear();
    EXPECT_FALSE(reload_game_configurations());
    EXPECT_TRUE(capture.contains("Failed to load main configs from \""));
    EXPECT_EQ(configs().trial_time, 30);

    // A broken custom file leaves the base configuration in effect.
    write("configurations.json", shipped_configuration());
    write("fast.json", "{\"trial_time\": \"slow\"}");
    program_params().config = "fast.json";
    EXPECT_TRUE(reload_game_configurations());
    EXPECT_EQ(configs().trial_time, 60);
    EXPECT_TRUE(capture.contains("Failed to load custom configs from \"" +
                                 (root / "datafiles" / "fast.json").string() + "\"."));
}

TEST_F(ConfigsLoaderTest, NoCustomNameLoadsTheBaseOnly) {
    write("configurations.json", shipped_configuration());
    ASSERT_TRUE(reload_game_configurations());  // headless: the question is cancelled
    EXPECT_TRUE(
        capture.contains("No custom configurations were loaded, because none were specified."));
    initialize_configs();
    EXPECT_TRUE(capture.contains("called more than once"));
    EXPECT_TRUE(configs_loaded());
}

}  // namespace
}  // namespace veldra
