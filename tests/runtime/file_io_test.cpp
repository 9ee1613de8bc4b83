#include "runtime/file_io.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "support/scratch_directory.h"

namespace veldra {
namespace {

void write_bytes(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

TEST(ReadWholeFile, ReadsARegularFileByteForByte) {
    testing::ScratchDirectory dir("file_io");
    const std::string bytes("a\0b\r\n\xff", 6);
    write_bytes(dir.path() / "f", bytes);
    const FileText read = read_whole_file((dir.path() / "f").string(), 6);
    ASSERT_TRUE(read) << read.error;
    EXPECT_EQ(*read.text, bytes);
    write_bytes(dir.path() / "empty", "");
    EXPECT_EQ(*read_whole_file((dir.path() / "empty").string(), 0).text, "");
}

TEST(ReadWholeFile, RefusesWhatIsNotABoundedRegularFile) {
    testing::ScratchDirectory dir("file_io");
    write_bytes(dir.path() / "big", std::string(101, 'x'));
    const std::string fifo = (dir.path() / "fifo").string();
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);

    EXPECT_EQ(read_whole_file((dir.path() / "missing").string(), 100).error, "no such file");
    EXPECT_EQ(read_whole_file(dir.path().string(), 100).error, "is a directory, not a file");
    // Neither may block or grow without end.
    EXPECT_NE(read_whole_file(fifo, 100).error.find("not a regular file"), std::string::npos);
    EXPECT_NE(read_whole_file("/dev/zero", 100).error.find("not a regular file"),
              std::string::npos);
    EXPECT_EQ(read_whole_file((dir.path() / "big").string(), 100).error,
              "is larger than 100 bytes, the most this file may hold");
    EXPECT_TRUE(read_whole_file((dir.path() / "big").string(), 101));
}

TEST(WriteWholeFile, ReplacesTheFileOnlyWhenEveryByteIsWritten) {
    testing::ScratchDirectory dir("file_io");
    const std::string path = (dir.path() / "out.txt").string();
    EXPECT_EQ(write_whole_file(path, "first"), "");
    EXPECT_EQ(write_whole_file(path, "second"), "");
    EXPECT_EQ(*read_whole_file(path, 100).text, "second");
    EXPECT_FALSE(std::filesystem::exists(path + ".writing"));

    EXPECT_EQ(write_whole_file(dir.path().string(), "x"), "is a directory, not a file");
    EXPECT_EQ(write_whole_file((dir.path() / "no" / "dir").string(), "x"),
              "No such file or directory");
    // A full disk is reported, and the device is not replaced by a file.
    EXPECT_EQ(write_whole_file("/dev/full", std::string(100000, 'x')), "No space left on device");
    EXPECT_FALSE(std::filesystem::is_regular_file("/dev/full"));
}

TEST(SameFile, SeesThroughSpellingsAndLinks) {
    testing::ScratchDirectory dir("file_io");
    write_bytes(dir.path() / "a", "a");
    write_bytes(dir.path() / "b", "a");
    std::filesystem::create_hard_link(dir.path() / "a", dir.path() / "link");
    const std::string a = (dir.path() / "a").string();
    EXPECT_TRUE(same_file(a, (dir.path() / "." / "a").string()));
    EXPECT_TRUE(same_file(a, (dir.path() / "link").string()));
    EXPECT_FALSE(same_file(a, (dir.path() / "b").string()));
    EXPECT_FALSE(same_file(a, (dir.path() / "missing").string()));
}

}  // namespace
}  // namespace veldra
