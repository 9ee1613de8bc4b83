#pragma once
// A child process owned by the one that started it. It is waited for exactly once, so no
// zombie is left behind; one still running when its owner goes away is killed and reaped, so an
// early return cannot leave a stray process playing on.

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace veldra::platform {

// A descriptor of the parent that the child finds under another number (its standard input,
// or an agreed reply descriptor).
struct InheritedDescriptor {
    int parent_fd;
    int child_fd;
};

class ChildProcess {
public:
    // Starts the program at argv[0] (a path; no search of PATH) with exactly `environment`
    // ("NAME=value" entries) and `descriptors` under their new numbers. Of this process's other
    // descriptors it inherits those not marked close-on-exec (a Pipe's never are). nullopt,
    // with errno set, when it cannot be started.
    static std::optional<ChildProcess> spawn(const std::vector<std::string>& argv,
                                             const std::vector<std::string>& environment,
                                             const std::vector<InheritedDescriptor>& descriptors);

    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ChildProcess(ChildProcess&& other) noexcept;
    ChildProcess& operator=(ChildProcess&& other) noexcept;

    // True until its exit status has been collected.
    bool running() const { return pid_ > 0; }

    // Waits for the child to end and returns its exit status as a shell reports it: the code it
    // exited with, or 128 + the signal that ended it; -1 when the system has no status for it
    // (someone else collected it, or it was collected already).
    int wait();
    // The same without waiting: nullopt while the child still runs.
    std::optional<int> try_wait();
    // Sends `signal`; false when the child has already been waited for.
    bool kill(int signal);

private:
    explicit ChildProcess(pid_t pid) : pid_(pid) {}
    void end_if_running();

    pid_t pid_ = -1;
};

// False where this build cannot start children (the Windows build, for now): work that would be
// spread over child processes is done in this one instead.
bool child_processes_supported();

// This process's environment, as "NAME=value" entries, to pass on to a child with additions.
std::vector<std::string> current_environment();

}  // namespace veldra::platform
