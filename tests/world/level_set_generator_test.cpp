#include "world/level_set_generator.h"

#include <fstream>
#include <iterator>
#include <string>

#include "runtime/log.h"
#include "world/level_file.h"
#include "world_test_support.h"

namespace veldra {
namespace {

class LevelSetGenerator : public testing::WorldTest {
protected:
    std::string config(const std::string& text) {
        const auto path = (scratch() / "generator.json").string();
        std::ofstream(path) << text;
        return path;
    }

    static std::string read_text(const std::filesystem::path& path) {
        std::ifstream in(path, std::ios::binary);
        return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    }

    static constexpr const char* VALID = R"({
        // sizes in cells
        "width": 14, "height": 12, "count": 3, "seed": 77,
        "monster_amounts": [1, 2], "food_amounts": [2], "human_amounts": [0, 3],
        "sand_amounts": [0, 6]
    })";

    void expect_failure(const std::string& text, const std::string& detail) {
        LogCapture capture;
        EXPECT_FALSE(generate_level_set(files, types, config(text), (scratch() / "out").string(),
                                        std::nullopt))
            << text;
        ASSERT_EQ(capture.lines.size(), 2u) << text;
        EXPECT_EQ(capture.lines[0].message, "Failed to read generator configurations.");
        EXPECT_NE(capture.lines[1].message.find(detail), std::string::npos)
            << capture.lines[1].message;
        EXPECT_NE(capture.lines[1].message.find("generator.json"), std::string::npos);
    }
};

TEST_F(LevelSetGenerator, SameSeedSameFiles) {
    const auto path = config(VALID);
    LogCapture capture;
    ASSERT_TRUE(generate_level_set(files, types, path, (scratch() / "a").string(), std::nullopt));
    EXPECT_TRUE(capture.contains("Generated 3 levels into"));
    ASSERT_TRUE(generate_level_set(files, types, path, (scratch() / "b" / "nested").string(),
                                   std::nullopt));
    ASSERT_TRUE(generate_level_set(files, types, path, (scratch() / "c").string(), 78.0));
    for (const char* name : {"level_001.txt", "level_002.txt", "level_003.txt"}) {
        const std::string text = read_text(scratch() / "a" / name);
        EXPECT_EQ(text, read_text(scratch() / "b" / "nested" / name));
        EXPECT_NE(text, read_text(scratch() / "c" / name));
        const auto level = level_load_from_file(files, types, (scratch() / "a" / name).string());
        ASSERT_TRUE(level);
        EXPECT_EQ(level->width, 14);
        EXPECT_EQ(level->height, 12);
        EXPECT_EQ(level_get_num_cells_of_type(*level, types.LCT_player), 1);
    }
    EXPECT_FALSE(std::filesystem::exists(scratch() / "a" / "level_004.txt"));
    ASSERT_TRUE(generate_level_set(files, types, path, (scratch() / "d").string(), 77.0));
    EXPECT_EQ(read_text(scratch() / "a" / "level_002.txt"),
              read_text(scratch() / "d" / "level_002.txt"));
}

// Generated into memory from a request in memory: the same levels as on the disk, and none of it
// reaches the disk.
TEST_F(LevelSetGenerator, GeneratesThroughTheGivenFiles) {
    MemoryFiles memory;
    memory.files["generator.json"] = VALID;
    LogCapture capture;
    ASSERT_TRUE(generate_level_set(memory, types, "generator.json", "levels", std::nullopt));
    ASSERT_TRUE(
        generate_level_set(files, types, config(VALID), (scratch() / "a").string(), std::nullopt));
    EXPECT_EQ(memory.files.size(), 4u);
    EXPECT_FALSE(std::filesystem::exists("levels"));
    for (const char* name : {"level_001.txt", "level_002.txt", "level_003.txt"}) {
        const std::string in_memory = (std::filesystem::path("levels") / name).string();
        EXPECT_EQ(memory.files.at(in_memory), read_text(scratch() / "a" / name));
        const auto level = level_load_from_file(memory, types, in_memory);
        ASSERT_TRUE(level);
        EXPECT_EQ(level->name, std::filesystem::path(name).stem().string());
    }
}

TEST_F(LevelSetGenerator, BadFilesFailWithClearMessages) {
    expect_failure("{ \"width\": 14, ", "is not valid JSON");
    expect_failure("[1, 2]", "must hold a JSON object");
    std::string two_by_two = VALID;
    two_by_two.replace(two_by_two.find("\"width\": 14"), 11, "\"width\": 2");
    expect_failure(two_by_two, "\"width\" must be a whole number from 3 to");
    // Sizes whose generation takes minutes or never succeeds are refused before any attempt.
    std::string huge = VALID;
    huge.replace(huge.find("\"width\": 14"), 11, "\"width\": 401");
    expect_failure(huge, "\"width\" must be a whole number from 3 to 400");
    std::string no_food = VALID;
    no_food.replace(no_food.find("[2]"), 3, "[]");
    expect_failure(no_food, "\"food_amounts\" must be a non-empty array");
    std::string negative = VALID;
    negative.replace(negative.find("[0, 3]"), 6, "[0, -3]");
    expect_failure(negative, "\"human_amounts\" must be a non-empty array");
    std::string no_seed = VALID;
    no_seed.replace(no_seed.find("\"seed\": 77,"), 11, "");
    expect_failure(no_seed, "\"seed\" must be given");

    LogCapture capture;
    EXPECT_FALSE(generate_level_set(files, types, (scratch() / "absent.json").string(),
                                    (scratch() / "out").string(), std::nullopt));
    EXPECT_TRUE(capture.contains("absent.json\" no such file."));
    EXPECT_FALSE(generate_level_set(files, types, scratch().string(), (scratch() / "out").string(),
                                    std::nullopt));
    EXPECT_TRUE(capture.contains("\" is a directory, not a file."));
}

TEST_F(LevelSetGenerator, NumbersBeyondTheirRangeAreRefusedNotCast) {
    for (const char* bad : {"1e30", "-1e30", "2147483648", "1e999", "18446744073709551615"}) {
        std::string text = VALID;
        text.replace(text.find("\"width\": 14"), 11, std::string("\"width\": ") + bad);
        expect_failure(text, std::string(bad) == "1e999" ? "number overflow" : "\"width\" must be");
    }
    std::string seed = VALID;
    seed.replace(seed.find("\"seed\": 77"), 10, "\"seed\": 1.5");
    expect_failure(seed, "\"seed\" must be a whole number");
    std::string count = VALID;
    count.replace(count.find("\"count\": 3"), 10, "\"count\": 1e12");
    expect_failure(count, "\"count\" must be a whole number");
}

TEST_F(LevelSetGenerator, UnplayableSizeFailsAfterAllAttempts) {
    std::string tiny = VALID;
    const std::string size = "\"width\": 14, \"height\": 12";
    tiny.replace(tiny.find(size), size.size(), "\"width\": 3, \"height\": 3");
    LogCapture capture;
    EXPECT_FALSE(
        generate_level_set(files, types, config(tiny), (scratch() / "out").string(), std::nullopt));
    EXPECT_TRUE(capture.contains("Failed to generate level 1 of 3"));
}

}  // namespace
}  // namespace veldra
