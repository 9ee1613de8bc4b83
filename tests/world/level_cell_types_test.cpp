#include "world/level_cell_types.h"

#include <set>
#include <string>

#include "runtime/log.h"
#include "runtime/once.h"
#include "world_test_support.h"

namespace veldra {
namespace {

using LevelCellTypes = testing::WorldTest;

TEST_F(LevelCellTypes, TableInConstructionOrder) {
    std::string characters;
    std::string untraversable;
    for (const LevelCellType* type : types.allLevelCellTypes) {
        characters.push_back(type->character);
        if (!type->is_traversable)
            untraversable.push_back(type->character);
        EXPECT_EQ(types.levelCellTypesByChar.at(type->character), type);
    }
    EXPECT_EQ(characters, " xrh0123456789pmfs");
    EXPECT_EQ(untraversable, "xr");
    EXPECT_EQ(types.LCT_sand->character, 's');
    EXPECT_EQ(types.from_char('y'), nullptr);
}

TEST_F(LevelCellTypes, DigitsAreDistinctTypedHumans) {
    std::set<const LevelCellType*> distinct;
    for (int digit = 0; digit <= 9; ++digit) {
        const LevelCellType* type = types.from_char(char('0' + digit));
        ASSERT_NE(type, nullptr);
        EXPECT_EQ(type->type_number, digit);
        EXPECT_EQ(types.all_typed_human_ai_level_cell_types[digit], type);
        distinct.insert(type);
    }
    EXPECT_EQ(distinct.size(), 10u);
    EXPECT_EQ(types.from_char('h'), types.LCT_human_random);
    EXPECT_FALSE(types.LCT_human_random->type_number.has_value());
}

TEST_F(LevelCellTypes, SecondInitializationLogsAndRebuilds) {
    const LevelCellType* old_sand = types.LCT_sand;
    LogCapture capture;
    initialize_level_cell_types(types);
    ASSERT_EQ(capture.lines.size(), 1u);
    EXPECT_EQ(capture.lines[0].level, LogLevel::error);
    EXPECT_EQ(capture.lines[0].message.rfind(std::string(ONCE_ONLY_MESSAGE) + "\n", 0), 0u);
    EXPECT_NE(capture.lines[0].message.find("initialize_level_cell_types"), std::string::npos);
    // A fresh table: old records no longer match, yet stay readable for levels made from them.
    EXPECT_NE(types.LCT_sand, old_sand);
    EXPECT_EQ(old_sand->character, 's');
    EXPECT_EQ(types.allLevelCellTypes.size(), 18u);
}

}  // namespace
}  // namespace veldra
