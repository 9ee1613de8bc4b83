#include "runtime/file_io.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdio>

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

// A file size limit makes a real file fill up part-way through a line, as a full disk does.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        ::getrlimit(RLIMIT_FSIZE, &saved_);
        previous_handler_ = std::signal(SIGXFSZ, SIG_IGN);  // the write fails instead
        rlimit limit = saved_;
        limit.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &saved_);
        std::signal(SIGXFSZ, previous_handler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit saved_{};
    void (*previous_handler_)(int) = SIG_DFL;
};

TEST(WriteAllAndFlush, AFailedWriteLeavesOnlyWholePiecesInTheFile) {
    testing::ScratchDirectory dir("file_io");
    const std::string path = (dir.path() / "lines.csv").string();
    std::FILE* file = std::fopen(path.c_str(), "ab");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(write_all_and_flush(file, "header\n"), "");
    {
        FileSizeLimit limit(20);
        EXPECT_EQ(write_all_and_flush(file, "line 1\n"), "");
        EXPECT_EQ(write_all_and_flush(file, "a line that does not fit\n"), "File too large");
    }
    std::fclose(file);
    EXPECT_EQ(*read_whole_file(path, 100).text, "header\nline 1\n");

    // Nothing of the failed piece waits in the stream to be written later either.
    file = std::fopen(path.c_str(), "ab");
    ASSERT_NE(file, nullptr);
    {
        FileSizeLimit limit(20);
        EXPECT_NE(write_all_and_flush(file, "another long line\n"), "");
    }
    EXPECT_EQ(write_all_and_flush(file, "line 2\n"), "");
    std::fclose(file);
    EXPECT_EQ(*read_whole_file(path, 100).text, "header\nline 1\nline 2\n");
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
