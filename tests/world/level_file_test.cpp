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
    // The game's functions take paths as text.
    std::string write_text(const std::string& name, const std::string& text) {
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
    const std::string path = (scratch() / "round_trip.txt").string();
    ASSERT_TRUE(level_write_to_file(files, level, path));
    EXPECT_EQ(read_text(path), "xxxxx\nxp0sx\nxmfhx\nxr  x\nxxxxx\n");
    const auto loaded = level_load_from_file(files, types, path);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->name, "round_trip");
    EXPECT_EQ(rows_of(*loaded), rows_of(level));
    EXPECT_EQ(loaded->cell_at(2, 1).type, types.all_typed_human_ai_level_cell_types[0]);
}

TEST_F(LevelFile, UnequalLinesArePadded) {
    const auto loaded =
        level_load_from_file(files, types, write_text("ragged.txt", "xxx\nx\n\nxxxxx\n"));
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->width, 5);
    EXPECT_EQ(rows_of(*loaded), (std::vector<std::string>{"xxx  ", "x    ", "     ", "xxxxx"}));
    const std::string path = (scratch() / "ragged_out.txt").string();
    ASSERT_TRUE(level_write_to_file(files, *loaded, path));
    EXPECT_EQ(read_text(path), "xxx  \nx    \n     \nxxxxx\n");
}

TEST_F(LevelFile, UnknownCharactersWarnWithTheirPlaceAndBecomeEmpty) {
    LogCapture capture;
    const auto path = write_text("odd.txt", "x\ty\nyx\n");
    const auto loaded = level_load_from_file(files, types, path);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(rows_of(*loaded), (std::vector<std::string>{"x  ", " x "}));
    ASSERT_EQ(capture.lines.size(), 3u);
    EXPECT_EQ(capture.lines[0].level, LogLevel::warning);
    EXPECT_EQ(capture.lines[0].message, "Failed to parse level cell from string \"\\x09\". (\"" +
                                            path + "\", row 1, column 2)");
    EXPECT_TRUE(capture.contains("\"y\". (\"" + path + "\", row 2, column 1)"));
}

TEST_F(LevelFile, ReadsCharactersNotBytes) {
    LogCapture capture;
    // A byte order mark is no cell; "é" and "→" are one cell each, shown by their bytes.
    const auto loaded = level_load_from_file(
        files, types, write_text("utf8.txt", "\xEF\xBB\xBFx\xC3\xA9x\nx\xE2\x86\x92\n"));
    ASSERT_TRUE(loaded);
    EXPECT_EQ(rows_of(*loaded), (std::vector<std::string>{"x x", "x  "}));
    EXPECT_TRUE(capture.contains("\"\\xc3\\xa9\". ("));
    EXPECT_TRUE(capture.contains("row 2, column 2)"));
    EXPECT_EQ(capture.lines.size(), 2u);

    // Many bad cells: a few warnings and a count, not a flood.
    capture.lines.clear();
    ASSERT_TRUE(level_load_from_file(files, types, write_text("many.txt", std::string(500, '?'))));
    EXPECT_EQ(capture.lines.size(), 21u);
    EXPECT_TRUE(capture.contains("480 more cells could not be parsed and are empty."));
}

TEST_F(LevelFile, BinaryHugeAndSpecialFilesAreRefusedWithTheReason) {
    LogCapture capture;
    const auto expect_refused = [&](const std::string& path, const std::string& why) {
        capture.lines.clear();
        EXPECT_FALSE(level_load_from_file(files, types, path)) << path;
        ASSERT_EQ(capture.lines.size(), 2u) << path;
        EXPECT_EQ(capture.lines[0].message, "Failed to read level from file \"" + path + "\".");
        EXPECT_NE(capture.lines[1].message.find(why), std::string::npos)
            << capture.lines[1].message;
    };
    expect_refused(write_text("nul.txt", std::string("xx\nx\0x", 6)),
                   "nul.txt\" is not a text file (line 2, column 2: a zero byte");
    expect_refused(write_text("latin1.txt", "x\xE9x"), "line 1, column 2: a byte sequence");
    expect_refused(write_text("wide.txt", std::string(1001, 'x')),
                   "is 1001 x 1 cells; a level may be at most 1000 x 1000");
    std::string tall;
    for (int i = 0; i < 1001; ++i)
        tall += "x\n";
    expect_refused(write_text("tall.txt", tall), "is 1 x 1001 cells");
    expect_refused(scratch().string(), "is a directory, not a file");
    expect_refused("/dev/zero", "is not a regular file");
    EXPECT_TRUE(
        level_load_from_file(files, types, write_text("square.txt", std::string(1000, 'x'))));
}

TEST_F(LevelFile, LineEndsAndEmptyFiles) {
    const auto lf = level_load_from_file(files, types, write_text("lf.txt", "xp\nmx\n"));
    const auto crlf = level_load_from_file(files, types, write_text("crlf.txt", "xp\r\nmx\r\n"));
    const auto no_final = level_load_from_file(files, types, write_text("no_final.txt", "xp\nmx"));
    ASSERT_TRUE(lf && crlf && no_final);
    EXPECT_EQ(rows_of(*crlf), rows_of(*lf));
    EXPECT_EQ(rows_of(*no_final), rows_of(*lf));
    EXPECT_EQ(lf->height, 2);

    // Only one empty line after the last line end is dropped; a second is a row of its own.
    EXPECT_EQ(level_load_from_file(files, types, write_text("blank.txt", "xp\n\n"))->height, 2);

    const auto empty = level_load_from_file(files, types, write_text("empty.txt", ""));
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->width, 0);
    EXPECT_EQ(empty->height, 0);
}

// Such levels load as they stand, but a trial of one ends at its first tick with no player to
// score: a level for a trial is refused with the file named.
TEST_F(LevelFile, ALevelForATrialNeedsAPlayer) {
    for (const auto& [name, text] : std::vector<std::pair<std::string, std::string>>{
             {"empty.txt", ""}, {"blanks.txt", "   \n   \n"}, {"no_player.txt", "xxx\nxmx\n"}}) {
        LogCapture capture;
        const auto path = write_text(name, text);
        EXPECT_TRUE(level_load_from_file(files, types, path)) << name;
        EXPECT_FALSE(level_load_for_trial(files, types, path)) << name;
        EXPECT_TRUE(capture.contains("Level file \"" + path +
                                     "\" has no player (no \"p\" cell): a trial needs one."))
            << name;
    }
    const auto played = level_load_for_trial(files, types, write_text("ok.txt", "xxx\nxpx\n"));
    ASSERT_TRUE(played);
    EXPECT_EQ(played->name, "ok");
    LogCapture capture;
    EXPECT_FALSE(level_load_for_trial(files, types, (scratch() / "missing.txt").string()));
    EXPECT_TRUE(capture.contains("no such file."));
}

TEST_F(LevelFile, UnreadableOrUnwritableFiles) {
    LogCapture capture;
    const std::string missing = (scratch() / "missing.txt").string();
    EXPECT_FALSE(level_load_from_file(files, types, missing));
    ASSERT_EQ(capture.lines.size(), 2u);
    EXPECT_EQ(capture.lines[0].level, LogLevel::error);
    EXPECT_EQ(capture.lines[0].message, "Failed to read level from file \"" + missing + "\".");
    EXPECT_EQ(capture.lines[1].message, "\"" + missing + "\" no such file.");
    const Level level = level_from_rows({"x"});
    EXPECT_FALSE(
        level_write_to_file(files, level, (scratch() / "no_such_dir" / "out.txt").string()));
    EXPECT_FALSE(level_write_to_file(files, level, "/dev/full"));
    EXPECT_TRUE(capture.contains("\"/dev/full\": No space left on device."));
}

TEST_F(LevelFile, RandomTextLoadsAndRoundTrips) {
    std::mt19937 bytes(20240611);
    LogCapture capture;  // keeps the many warnings off the test output
    for (int round = 0; round < 200; ++round) {
        std::string text(bytes() % 300, '\0');
        for (char& c : text)
            c = static_cast<char>(bytes() % 8 == 0 ? '\n' : 1 + bytes() % 127);
        // A fresh name each round: truncating a file just written makes the disk flush it.
        const std::string name = "fuzz_" + std::to_string(round);
        const auto loaded = level_load_from_file(files, types, write_text(name + ".txt", text));
        ASSERT_TRUE(loaded);
        ASSERT_EQ(loaded->height, static_cast<int>(loaded->cells.size()));
        for (const auto& row : loaded->cells) {
            ASSERT_EQ(static_cast<int>(row.size()), loaded->width);
            for (const LevelCell& cell : row)
                ASSERT_NE(cell.type, nullptr);
        }
        // Whatever was made of the bytes survives a write and a read unchanged.
        const std::string copy = (scratch() / (name + "_copy.txt")).string();
        ASSERT_TRUE(level_write_to_file(files, *loaded, copy));
        ASSERT_EQ(rows_of(*level_load_from_file(files, types, copy)), rows_of(*loaded));
    }
}

}  // namespace
}  // namespace veldra
