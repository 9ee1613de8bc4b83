#include "platform/child_process.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>
#include <utility>

extern char** environ;

namespace veldra::platform {

namespace {

std::vector<char*> c_strings(const std::vector<std::string>& strings) {
    std::vector<char*> pointers;
    // The exec family predates const; it only reads the strings.
    for (const std::string& text : strings)
        pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

int shell_status(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

bool child_processes_supported() {
    return true;
}

std::optional<ChildProcess> ChildProcess::spawn(
    const std::vector<std::string>& argv, const std::vector<std::string>& environment,
    const std::vector<InheritedDescriptor>& descriptors) {
    if (argv.empty()) {
        errno = EINVAL;
        return std::nullopt;
    }
    std::vector<char*> arguments = c_strings(argv);
    std::vector<char*> entries = c_strings(environment);
    posix_spawn_file_actions_t actions;
    if (const int error = posix_spawn_file_actions_init(&actions); error != 0) {
        errno = error;
        return std::nullopt;
    }
    // dup2 clears close-on-exec on the copy, so these survive into the child.
    for (const InheritedDescriptor& descriptor : descriptors)
        posix_spawn_file_actions_adddup2(&actions, descriptor.parent_fd, descriptor.child_fd);
    pid_t pid = -1;
    const int error =
        posix_spawn(&pid, arguments[0], &actions, nullptr, arguments.data(), entries.data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        errno = error;
        return std::nullopt;
    }
    return ChildProcess(pid);
}

ChildProcess::~ChildProcess() {
    end_if_running();
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept : pid_(std::exchange(other.pid_, -1)) {}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
    if (this != &other) {
        end_if_running();
        pid_ = std::exchange(other.pid_, -1);
    }
    return *this;
}

void ChildProcess::end_if_running() {
    if (running()) {
        kill(SIGKILL);
        wait();
    }
}

int ChildProcess::wait() {
    if (!running())
        return -1;  // waitpid(-1) would take any other child's status
    int status = 0;
    pid_t got = -1;
    do {
        got = ::waitpid(pid_, &status, 0);
    } while (got < 0 && errno == EINTR);
    pid_ = -1;
    return got < 0 ? -1 : shell_status(status);
}

std::optional<int> ChildProcess::try_wait() {
    if (!running())
        return -1;
    int status = 0;
    const pid_t got = ::waitpid(pid_, &status, WNOHANG);
    if (got == 0)
        return std::nullopt;
    pid_ = -1;
    return got < 0 ? -1 : shell_status(status);
}

bool ChildProcess::kill(int signal) {
    return running() && ::kill(pid_, signal) == 0;
}

std::vector<std::string> current_environment() {
    std::vector<std::string> entries;
    for (char** entry = environ; *entry; ++entry)
        entries.emplace_back(*entry);
    return entries;
}

}  // namespace veldra::platform
