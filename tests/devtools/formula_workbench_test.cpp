#include "devtools/formula_workbench.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "config/game_configurations.h"
#include "devtools/formula_edits.h"
#include "runtime/files.h"
#include "runtime/log.h"
#include "runtime/paths.h"
#include "support/scoped_environment.h"

namespace veldra {
namespace {

TEST(FormulaWorkbench, OffersEveryFormulaKeyAndOnlyThose) {
    const auto& keys = callable_configuration_keys();
    EXPECT_NE(std::find(keys.begin(), keys.end(), "weight_explore"), keys.end());
    EXPECT_NE(std::find(keys.begin(), keys.end(), "target_weight_approach_food"), keys.end());
    EXPECT_EQ(std::find(keys.begin(), keys.end(), "trial_time"), keys.end());
    EXPECT_EQ(std::find(keys.begin(), keys.end(), "options_openness"), keys.end());
    const GameConfigurations configs;
    for (const std::string& key : keys)
        EXPECT_NE(find_configuration_method(configs, key), nullptr) << key;
    EXPECT_EQ(find_configuration_method(configs, "trial_time"), nullptr);
}

TEST(FormulaWorkbench, MistakesAreReportedAtTheirLineAndColumn) {
    const CheckedFormula fine = check_formula("weight_explore", "max(0,\n 0.6 + O)");
    EXPECT_TRUE(fine.compiled);
    EXPECT_FALSE(fine.problem);

    const CheckedFormula open = check_formula("weight_explore", "max(0,\n  0.6 + * O)");
    ASSERT_TRUE(open.problem);
    EXPECT_FALSE(open.compiled);
    EXPECT_EQ(open.problem->line, 2);
    EXPECT_EQ(open.problem->column, 9);
    EXPECT_EQ(describe_formula_problem(*open.problem).rfind("line 2, column 9: ", 0), 0u);

    // The explore weight is not given the distance: the loader would refuse it, and so does this.
    const CheckedFormula unknown = check_formula("weight_explore", "DISTANCE");
    ASSERT_TRUE(unknown.problem);
    EXPECT_EQ(unknown.problem->line, 1);
    EXPECT_EQ(unknown.problem->column, 1);
    EXPECT_TRUE(check_formula("target_weight_approach_food", "2 - DISTANCE").compiled);
}

TEST(FormulaWorkbench, TabulatesEachOfferedTraitValueOverEnergy) {
    GameConfigurations configs;
    configs.options_openness = Value::array({Value(-1.0), Value(1.0)});
    configs.options_neuroticism = Value::array({Value(0.5)});
    const CheckedFormula formula =
        check_formula("weight_approach_food", "10 * O + N + ENERGY_LEVEL");
    ASSERT_TRUE(formula.compiled);
    const FormulaTable table =
        formula_table(configs, ConfigMethodKind::plain, *formula.compiled, UNDEFINED_NUMBER);
    ASSERT_EQ(table.rows.size(), 3u);
    EXPECT_EQ(table.rows[0].label, "O = -1");
    EXPECT_EQ(table.rows[2].label, "N = 0.5");
    EXPECT_EQ(table.rows[1].values, (std::vector<double>{10, 10.25, 10.5, 10.75, 11}));
    EXPECT_EQ(table.rows[2].values.front(), 0.5);
    const std::vector<float> curve = formula_energy_curve(
        ConfigMethodKind::plain, *formula.compiled, table.rows[0].traits, UNDEFINED_NUMBER, 3);
    EXPECT_EQ(curve, (std::vector<float>{-10, -9.5f, -9}));
}

// Reads what a test wrote, else the disk (the shipped configuration); writes stay in memory.
class WritesInMemory final : public Files {
public:
    FileText read(const std::string& path, std::size_t max_bytes) override {
        if (memory.exists(path))
            return memory.read(path, max_bytes);
        return disk.read(path, max_bytes);
    }
    std::string write(const std::string& path, const std::string& text) override {
        return memory.write(path, text);
    }
    bool exists(const std::string& path) override {
        return memory.exists(path) || disk.exists(path);
    }
    std::string create_directories(const std::string&) override { return ""; }

    MemoryFiles memory;
    DiskFiles disk;
};

class FormulaEditsTest : public ::testing::Test {
protected:
    void SetUp() override {
        initialize_configs(live);
        ASSERT_TRUE(reload_game_configurations(live, files, ""));
        shipped = std::string(live->weight_explore.source());
    }
    std::string explore() const { return std::string(live->weight_explore.source()); }

    testing::ScopedEnvironment data_folder = testing::data_folder_is_source_tree();
    WritesInMemory files;
    ConfigsState live;
    std::string shipped;
    LogCapture log;
};

TEST_F(FormulaEditsTest, AnAppliedEditRunsAndRevertingBringsBackTheFiles) {
    FormulaEdits edits;
    EXPECT_FALSE(edits.changed());
    ASSERT_TRUE(edits.apply(live, files, "weight_explore", "2 + O").applied);
    EXPECT_EQ(explore(), "2 + O");
    EXPECT_TRUE(edits.changed());
    // A second edit builds on the first.
    ASSERT_TRUE(edits.apply(live, files, "weight_approach_food", "1").applied);
    EXPECT_EQ(explore(), "2 + O");
    EXPECT_EQ(live->weight_approach_food.source(), "1");
    EXPECT_TRUE(edits.save_as(files, "mine.json").empty());
    EXPECT_NE(files.memory.files["mine.json"].find("\"weight_explore\": \"2 + O\""),
              std::string::npos);

    ASSERT_TRUE(edits.revert(live, files).applied);
    EXPECT_EQ(explore(), shipped);
    EXPECT_EQ(custom_configuration_in_effect(live), "");
    EXPECT_FALSE(edits.changed());
}

TEST_F(FormulaEditsTest, AFormulaThatFailsIsNeverAppliedAndTheRunningOneStays) {
    FormulaEdits edits;
    ASSERT_TRUE(edits.apply(live, files, "weight_explore", "3").applied);
    // Does not compile: refused before anything is written or loaded.
    const ConfigurationLoad syntax = edits.apply(live, files, "weight_explore", "3 +");
    EXPECT_FALSE(syntax.applied);
    ASSERT_FALSE(syntax.problems.empty());
    EXPECT_NE(syntax.problems[0].find("line 1, column"), std::string::npos);
    // Compiles, but gives no number for the offered traits: the loader refuses it, and the
    // edit in effect stays (not the base file, which a plain reload would fall back to).
    const ConfigurationLoad nan = edits.apply(live, files, "weight_explore", "sqrt(-1 - O*O)");
    EXPECT_FALSE(nan.applied);
    EXPECT_FALSE(nan.problems.empty());
    EXPECT_EQ(explore(), "3");
    EXPECT_TRUE(log.contains("The configuration in effect was kept."));
}

TEST_F(FormulaEditsTest, SavingNeverOverwritesTheBaseFile) {
    FormulaEdits edits;
    EXPECT_FALSE(edits.save_as(files, "x.json").empty()) << "nothing edited yet";
    ASSERT_TRUE(edits.apply(live, files, "weight_explore", "1").applied);
    const std::string base = make_included_file_filename("configurations.json");
    EXPECT_NE(edits.save_as(files, base).find("base configuration"), std::string::npos);
    EXPECT_FALSE(files.memory.exists(base));
    EXPECT_FALSE(edits.save_as(files, "").empty());
}

}  // namespace
}  // namespace veldra
