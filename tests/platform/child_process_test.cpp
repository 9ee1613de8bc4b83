#include "platform/child_process.h"

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>

#include "platform/pipe.h"

namespace veldra::platform {
namespace {

std::optional<ChildProcess> shell(const std::string& script,
                                  const std::vector<InheritedDescriptor>& descriptors = {},
                                  const std::vector<std::string>& environment = {}) {
    return ChildProcess::spawn({"/bin/sh", "-c", script}, environment, descriptors);
}

// A child that blocks reading a pipe the test holds open: it runs until told otherwise,
// without any timing.
struct BlockedChild {
    Pipe input = *Pipe::create();
    std::optional<ChildProcess> process =
        ChildProcess::spawn({"/bin/cat"}, {}, {{input.read_end().get(), STDIN_FILENO}});
};

// True when this process has no child left, running or unreaped.
bool no_child_left() {
    int status = 0;
    return ::waitpid(-1, &status, WNOHANG) == -1 && errno == ECHILD;
}

TEST(ChildProcess, ReportsTheExitCodeOrTheSignalAsAShellDoes) {
    auto exits = shell("exit 7");
    ASSERT_TRUE(exits);
    EXPECT_EQ(exits->wait(), 7);
    EXPECT_FALSE(exits->running());

    BlockedChild blocked;
    ASSERT_TRUE(blocked.process);
    EXPECT_EQ(blocked.process->try_wait(), std::nullopt);
    EXPECT_TRUE(blocked.process->kill(SIGINT));
    EXPECT_EQ(blocked.process->wait(), 128 + SIGINT);
    EXPECT_FALSE(blocked.process->kill(SIGINT)) << "no signal to a reaped, possibly reused pid";
}

TEST(ChildProcess, IsCollectedOnceAndNeverTakesAnotherChildsStatus) {
    auto first = shell("exit 7");
    ASSERT_TRUE(first);
    ASSERT_EQ(first->wait(), 7);
    // A second child that has ended and is not collected yet: the one a stray wait would take.
    auto ended = Pipe::create();
    ASSERT_TRUE(ended);
    auto second = shell("exit 5", {{ended->write_end().get(), 3}});
    ASSERT_TRUE(second);
    ended->write_end().close();
    char byte = 0;
    ASSERT_EQ(read_some(ended->read_end().get(), &byte, 1), 0u);  // its descriptors are gone
    EXPECT_EQ(first->wait(), -1);
    EXPECT_EQ(first->try_wait(), -1);
    EXPECT_EQ(second->wait(), 5);
}

TEST(ChildProcess, EndsWhenItsInputEnds) {
    BlockedChild blocked;
    ASSERT_TRUE(blocked.process);
    blocked.input.write_end().close();
    EXPECT_EQ(blocked.process->wait(), 0);
}

TEST(ChildProcess, GetsExactlyTheGivenEnvironmentAndDescriptors) {
    auto replies = Pipe::create();
    auto unrelated = Pipe::create();
    ASSERT_TRUE(replies && unrelated);
    const std::string script = "printf '%s' \"$ROLE\" >&3; [ -e /dev/fd/" +
                               std::to_string(unrelated->write_end().get()) +
                               " ] && printf ' leaked' >&3; exit 0";
    auto child = shell(script, {{replies->write_end().get(), 3}}, {"ROLE=worker"});
    ASSERT_TRUE(child);
    replies->write_end().close();
    ASSERT_EQ(child->wait(), 0);
    std::string said;
    char buffer[64];
    while (const auto got = read_some(replies->read_end().get(), buffer, sizeof buffer)) {
        if (*got == 0)
            break;
        said.append(buffer, *got);
    }
    EXPECT_EQ(said, "worker");
}

TEST(ChildProcess, AProgramThatIsNotThereIsNotStarted) {
    errno = 0;
    EXPECT_FALSE(ChildProcess::spawn({"/nonexistent/veldra"}, {}, {}));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(ChildProcess::spawn({}, {}, {}));
}

TEST(ChildProcess, OneStillRunningIsKilledAndReapedWithItsOwner) {
    {
        BlockedChild blocked;
        ASSERT_TRUE(blocked.process);
        ChildProcess moved = std::move(*blocked.process);
        blocked.process.reset();
        EXPECT_TRUE(moved.running()) << "the moved-from owner ended the child";
    }
    EXPECT_TRUE(no_child_left());
}

}  // namespace
}  // namespace veldra::platform
