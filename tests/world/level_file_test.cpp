#include "world/level_file.h"

#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "runtime/log.h"
#include "world_test_support.h"

namespace veldra {
namespace {

class LevelFile : public testing::WorldTest {
protected:
    std::filesystem::path write_text(const std::string& name, const std::string& text) {
        const auto path = scratch() / name;
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }

    static std::string read_text(const std::filesystem::path& path) {
        std::ifstream in(path, std::ios::binary);
        return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    }
};

TEST_F(LevelFile, WriteAndReadBack) {
    const Level level = level_from_rows({"xxxxx", "xp0sx", "xmfhx", "xr  x", "xxxxx"});
    const auto path = scratch() / "round_trip.txt";
    ASSERT_TRUE(level_write_to_file(level, path));
    EXPECT_EQ(read_text(path), "xxxxx\nxp0sx\nxmfhx\nxr  x\nxxxxx\n");
    const auto loaded = level_load_from_file(path);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->name, "round_trip");
    EXPECT_EQ(rows_of(*loaded), rows_of(level));
    EXPECT_EQ(loaded->cell_at(2, 1).type, lct().all_typed_human_ai_level_cell_types[0]);
}

TEST_F(LevelFile, UnequalLinesArePadded) {
    const auto loaded = level_load_from_file(write_text("ragged.txt", "xxx\nx\n\nxxxxx\n"));
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->width, 5);
    EXPECT_EQ(rows_of(*loaded), (std::vector<std::string>{"xxx  ", "x    ", "     ", "xxxxx"}));
    const auto path = scratch() / "ragged_out.txt";
    ASSERT_TRUE(level_write_to_file(*loaded, path));
    EXPECT_EQ(read_text(path), "xxx  \nx    \n     \nxxxxx\n");
}

TEST_F(LevelFile, UnknownCharactersWarnAndBecomeEmpty) {
    LogCapture capture;
    const auto loaded = level_load_from_file(write_text("odd.txt", "x\ty\nyx\n"));
    ASSERT_TRUE(loaded);
    EXPECT_EQ(rows_of(*loaded), (std::vector<std::string>{"x  ", " x "}));
    ASSERT_EQ(capture.lines.size(), 3u);
    EXPECT_EQ(capture.lines[0].level, LogLevel::warning);
    EXPECT_EQ(capture.lines[0].message, "Failed to parse level cell from string \"\t\".");
    EXPECT_EQ(capture.count("Failed to parse level cell from string \"y\"."), 2u);
}

TEST_F(LevelFile, LineEndsAndEmptyFiles) {
    const auto lf = level_load_from_file(write_text("lf.txt", "xp\nmx\n"));
    const auto crlf = level_load_from_file(write_text("crlf.txt", "xp\r\nmx\r\n"));
    const auto no_final = level_load_from_file(write_text("no_final.txt", "xp\nmx"));
    ASSERT_TRUE(lf && crlf && no_final);
    EXPECT_EQ(rows_of(*crlf), rows_of(*lf));
    EXPECT_EQ(rows_of(*no_final), rows_of(*lf));
    EXPECT_EQ(lf->height, 2);

    // Only one empty line after the last line end is dropped; a second is a row of its own.
    EXPECT_EQ(level_load_from_file(write_text("blank.txt", "xp\n\n"))->height, 2);

    const auto empty = level_load_from_file(write_text("empty.txt", ""));
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->width, 0);
    EXPECT_EQ(empty->height, 0);
}

TEST_F(LevelFile, UnreadableOrUnwritableFiles) {
    LogCapture capture;
    const auto missing = scratch() / "missing.txt";
    EXPECT_FALSE(level_load_from_file(missing));
    EXPECT_FALSE(level_load_from_file(scratch()));
    ASSERT_EQ(capture.lines.size(), 2u);
    EXPECT_EQ(capture.lines[0].level, LogLevel::error);
    EXPECT_EQ(capture.lines[0].message,
              "Failed to read level from file \"" + missing.string() + "\".");
    const Level level = level_from_rows({"x"});
    EXPECT_FALSE(level_write_to_file(level, scratch() / "no_such_dir" / "out.txt"));
    EXPECT_EQ(capture.lines.size(), 3u);
}

TEST_F(LevelFile, RandomBytesLoadOrFailCleanly) {
    std::mt19937 bytes(20240611);
    LogCapture capture;  // keeps the many warnings off the test output
    for (int round = 0; round < 200; ++round) {
        std::string text(bytes() % 300, '\0');
        for (char& c : text)
            c = static_cast<char>(bytes() % 8 == 0 ? '\n' : bytes() % 256);
        // A fresh name each round: truncating a file just written makes the disk flush it.
        const std::string name = "fuzz_" + std::to_string(round);
        const auto loaded = level_load_from_file(write_text(name + ".txt", text));
        ASSERT_TRUE(loaded);
        ASSERT_EQ(loaded->height, static_cast<int>(loaded->cells.size()));
        for (const auto& row : loaded->cells) {
            ASSERT_EQ(static_cast<int>(row.size()), loaded->width);
            for (const LevelCell& cell : row)
                ASSERT_NE(cell.type, nullptr);
        }
        // Whatever was made of the bytes survives a write and a read unchanged.
        const auto copy = scratch() / (name + "_copy.txt");
        ASSERT_TRUE(level_write_to_file(*loaded, copy));
        ASSERT_EQ(rows_of(*level_load_from_file(copy)), rows_of(*loaded));
    }
}

}  // namespace
}  // namespace veldra
