#include "runtime/files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/scratch_directory.h"

namespace veldra {
namespace {

// What readers tell apart, asked of one backend with every file under `dir`. Run against both,
// so a test that gives the game files in memory sees what the game sees on the disk.
void expect_reader_cases(Files& files, const std::string& dir) {
    const std::string missing = dir + "/missing.json";
    EXPECT_FALSE(files.exists(missing));
    const FileText absent = files.read(missing, 100);
    EXPECT_FALSE(absent);
    EXPECT_EQ(absent.error, "no such file");

    const std::string path = dir + "/settings.json";
    EXPECT_EQ(files.write(path, std::string(1025, 'x')), "");
    EXPECT_TRUE(files.exists(path));
    EXPECT_EQ(files.read(path, 1024).error, "is larger than 1 KiB, the most this file may hold");
    EXPECT_EQ(files.read(path, 1025).text->size(), 1025u);

    // A second write replaces the whole file, however much shorter.
    EXPECT_EQ(files.write(path, "{}\n"), "");
    EXPECT_EQ(*files.read(path, 3).text, "{}\n");
    EXPECT_EQ(files.read(path, 2).error, "is larger than 2 bytes, the most this file may hold");

    EXPECT_EQ(files.write(path, ""), "");
    EXPECT_EQ(*files.read(path, 0).text, "");

    // A folder made first takes a file: what savers do before they write into it.
    EXPECT_EQ(files.create_directories(dir + "/made/here"), "");
    EXPECT_EQ(files.write(dir + "/made/here/level.txt", "x\n"), "");
    EXPECT_EQ(*files.read(dir + "/made/here/level.txt", 100).text, "x\n");
}

TEST(Files, MemoryAndDiskAgreeOnWhatReadersTellApart) {
    testing::ScratchDirectory dir("files");
    DiskFiles disk;
    expect_reader_cases(disk, dir.path().string());
    MemoryFiles memory;
    expect_reader_cases(memory, "memory");
    EXPECT_EQ(memory.files.at("memory/made/here/level.txt"), "x\n");
}

TEST(Files, MemoryFilesNeverTouchTheDisk) {
    testing::ScratchDirectory dir("files");
    const std::string path = (dir.path() / "kept.txt").string();
    std::ofstream(path) << "on disk";
    MemoryFiles memory;
    EXPECT_FALSE(memory.exists(path));
    EXPECT_EQ(memory.read(path, 100).error, "no such file");
    EXPECT_EQ(memory.write(path, "in memory"), "");
    EXPECT_EQ(memory.create_directories((dir.path() / "new").string()), "");
    EXPECT_EQ(*DiskFiles().read(path, 100).text, "on disk");
    EXPECT_FALSE(std::filesystem::exists(dir.path() / "new"));
}

TEST(Files, DiskGivesTheReasonAFolderCannotBeMade) {
    testing::ScratchDirectory dir("files");
    std::ofstream(dir.path() / "plain") << "a file, not a folder";
    DiskFiles disk;
    EXPECT_EQ(disk.create_directories((dir.path() / "plain" / "sub").string()), "Not a directory");
    EXPECT_EQ(disk.create_directories(dir.path().string()), "");  // already there
    EXPECT_EQ(disk.read(dir.path().string(), 100).error, "is a directory, not a file");
    EXPECT_FALSE(disk.exists(dir.path().string()));
}

}  // namespace
}  // namespace veldra
