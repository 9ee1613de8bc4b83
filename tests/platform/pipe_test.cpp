#include "platform/pipe.h"

#include <fcntl.h>

#include <gtest/gtest.h>

#include <string>

#include "platform/signals.h"
#include "platform/wait_for_input.h"

namespace veldra::platform {
namespace {

bool is_open_fd(int fd) {
    return ::fcntl(fd, F_GETFD) != -1;
}

std::string read_everything(int fd) {
    std::string text;
    char buffer[4];  // smaller than the message: reads must be repeated
    while (const auto got = read_some(fd, buffer, sizeof buffer)) {
        if (*got == 0)
            break;
        text.append(buffer, *got);
    }
    return text;
}

TEST(Pipe, CarriesBytesAndEndsWhenTheWriterCloses) {
    auto pipe = Pipe::create();
    ASSERT_TRUE(pipe);
    ASSERT_TRUE(write_all(pipe->write_end().get(), "0 182 out.csv.part-1-of-9\n"));
    pipe->write_end().close();
    EXPECT_EQ(read_everything(pipe->read_end().get()), "0 182 out.csv.part-1-of-9\n");
    char byte = 0;
    EXPECT_EQ(read_some(pipe->read_end().get(), &byte, 1), 0u) << "the end stays the end";
}

TEST(Pipe, BothEndsCloseWithItAndOnlyWithTheLastOwner) {
    int read_fd = -1;
    int write_fd = -1;
    {
        auto pipe = Pipe::create();
        ASSERT_TRUE(pipe);
        read_fd = pipe->read_end().get();
        write_fd = pipe->write_end().get();
        EXPECT_TRUE(::fcntl(read_fd, F_GETFD) & FD_CLOEXEC) << "a child must not inherit it";
        Pipe moved = std::move(*pipe);
        pipe.reset();
        ASSERT_TRUE(is_open_fd(read_fd)) << "the moved-from pipe closed the new owner's ends";
        ASSERT_TRUE(write_all(moved.write_end().get(), "x"));
    }
    EXPECT_FALSE(is_open_fd(read_fd));
    EXPECT_FALSE(is_open_fd(write_fd));
}

TEST(FileDescriptor, AssigningClosesTheOneHeldBefore) {
    auto first = Pipe::create();
    auto second = Pipe::create();
    ASSERT_TRUE(first && second);
    const int old_fd = first->read_end().get();
    FileDescriptor held = std::move(first->read_end());
    held = std::move(second->read_end());
    EXPECT_FALSE(is_open_fd(old_fd));
    EXPECT_EQ(first->read_end().get(), -1);
    const int kept = held.release();
    EXPECT_TRUE(is_open_fd(kept)) << "a released descriptor is the caller's to close";
    FileDescriptor closer(kept);
}

TEST(Pipe, WritingWithoutAReaderFailsInsteadOfEndingTheProcess) {
    ignore_broken_pipes();
    auto pipe = Pipe::create();
    ASSERT_TRUE(pipe);
    pipe->read_end().close();
    EXPECT_FALSE(write_all(pipe->write_end().get(), "done\n"));
}

TEST(WaitForInput, NamesOnlyThePipesThatCanBeRead) {
    auto quiet = Pipe::create();
    auto talking = Pipe::create();
    auto closed = Pipe::create();
    ASSERT_TRUE(quiet && talking && closed);
    const int fds[] = {quiet->read_end().get(), talking->read_end().get(),
                       closed->read_end().get()};
    EXPECT_TRUE(wait_for_input(fds, std::chrono::milliseconds(0)).empty());
    ASSERT_TRUE(write_all(talking->write_end().get(), "done\n"));
    closed->write_end().close();  // a worker that exited: its end of input must wake the parent
    EXPECT_EQ(wait_for_input(fds, std::chrono::milliseconds(0)), (std::vector<std::size_t>{1, 2}));
}

}  // namespace
}  // namespace veldra::platform
