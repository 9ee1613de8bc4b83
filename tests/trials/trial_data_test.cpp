#include "trials/trial_data.h"

#include <gtest/gtest.h>

#include "runtime/gc.h"
#include "util/text.h"

namespace veldra {
namespace {

class TrialDataTest : public ::testing::Test {
protected:
    GcScope collector;
};

TEST_F(TrialDataTest, HeaderHasTheThirtyThreeSortedColumns) {
    const std::string expected =
        "config_version;game_version;level_info.filename;level_info.num_food;level_info.num_humans;"
        "level_info.num_humans_0;level_info.num_humans_1;level_info.num_humans_2;level_info.num_"
        "humans_3;"
        "level_info.num_humans_4;level_info.num_humans_5;level_info.num_humans_6;level_info.num_"
        "humans_7;"
        "level_info.num_humans_8;level_info.num_humans_9;level_info.num_humans_h;level_info.num_"
        "monsters;"
        "level_info.num_sand;level_info.play_order;result.energy_remaining;result.num_food_"
        "remaining;"
        "result.num_humans_remaining;result.num_monsters_remaining;result.time_left;result.trial_"
        "score;"
        "result.type;seed;traits.agreeableness;traits.conscientiousness;traits.extraversion;"
        "traits.neuroticism;traits.openness;user_id\n";
    EXPECT_EQ(trial_data_as_csv_headers(), expected);
    EXPECT_EQ(trial_data_get_flattened_names().size(), 33u);
}

TEST_F(TrialDataTest, DataLineFollowsTheColumnsAndQuotesDelimiters) {
    TrialData data;
    data.config_version = "v1";
    data.game_version = "1.0.0.0";
    data.seed = 4294967296.0;
    data.level_info.filename = "levels/a;b.txt";
    data.level_info.play_order = 3;
    data.level_info.num_monsters = 2;
    data.level_info.num_humans_per_type[9] = 1;
    data.traits = {0.5, -1, 0, 1, 0.25};
    data.result = {TrialOutcome::perished, 120, 1, 2, 3, 0.125, 12.345};
    const auto cells = string_split(trial_data_as_csv(data), ';');
    ASSERT_EQ(cells.size(), 34u);  // 33 cells, one of them holding a ";"
    EXPECT_EQ(cells[0], "v1");
    EXPECT_EQ(cells[2] + ";" + cells[3], "\"levels/a;b.txt\"");
    EXPECT_EQ(cells[15], "1");  // num_humans_9
    EXPECT_EQ(cells[20], "0.13");
    EXPECT_EQ(cells[25], "12.35");
    EXPECT_EQ(cells[26], "perished");
    EXPECT_EQ(cells[27], "4294967296");
    EXPECT_EQ(cells[28], "1");     // agreeableness
    EXPECT_EQ(cells[31], "0.25");  // neuroticism
    EXPECT_EQ(cells[32], "0.5");   // openness
    EXPECT_EQ(cells[33], "\n");    // no user id
}

// The record keeps whole numbers and the outcome as types; the CSV edge must write them exactly
// as the columns always read: words for the outcome, counts without a decimal point or exponent.
TEST_F(TrialDataTest, OutcomeAndCountsBecomeTextOnlyInTheLine) {
    TrialData data;
    data.level_info.play_order = 1048575;
    data.level_info.num_sand = 90000;
    data.result.time_left = 5184000;  // a day of ticks
    data.result.num_monsters_remaining = 123456;
    const auto cells = string_split(trial_data_as_csv(data), ';');
    ASSERT_EQ(cells.size(), 33u);
    EXPECT_EQ(cells[17], "90000");    // num_sand
    EXPECT_EQ(cells[18], "1048575");  // play_order
    EXPECT_EQ(cells[22], "123456");   // num_monsters_remaining
    EXPECT_EQ(cells[23], "5184000");  // time_left
    EXPECT_EQ(cells[25], "survived");
    data.result.outcome = TrialOutcome::perished;
    EXPECT_EQ(trial_result_to_value(data.result).get("type").as_string(), "perished");
}

TEST_F(TrialDataTest, MissingUserIdKeepsTheRowOneCellWide) {
    TrialData data;
    std::string line = trial_data_as_csv(data);
    EXPECT_EQ(std::count(line.begin(), line.end(), ';'), 32);
    EXPECT_TRUE(line.ends_with(";\n"));
    data.user_id = "u7";
    EXPECT_TRUE(trial_data_as_csv(data).ends_with(";u7\n"));
}

TEST(SnakeToCamelCase, SplitsAtUnderscores) {
    EXPECT_EQ(_snake_to_camel_case(""), "");
    EXPECT_EQ(_snake_to_camel_case("seed"), "seed");
    EXPECT_EQ(_snake_to_camel_case("num_humans_h"), "numHumansH");
    EXPECT_EQ(_snake_to_camel_case("num_food_remaining"), "numFoodRemaining");
    EXPECT_EQ(_snake_to_camel_case("a__b"), "aB");
}

}  // namespace
}  // namespace veldra
