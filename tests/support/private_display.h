#pragma once
// Each test that opens a window does so on a virtual X display of its own. Windows on one
// display share its pointer and its keyboard focus: when CTest runs two windowed tests side by
// side, one program's window takes the focus from the other's and its pointer moves under the
// other's menus. A display per test process keeps every test's input its own, whatever else runs.

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace veldra::testing {

namespace private_display_detail {

inline pid_t& server_pid() {
    static pid_t pid = 0;
    return pid;
}

inline void stop_server() {
    if (server_pid() > 0) {
        ::kill(server_pid(), SIGTERM);
        ::waitpid(server_pid(), nullptr, 0);
        server_pid() = 0;
    }
}

// Reads the display number the server writes once it listens; empty on a time-out or its exit.
inline std::string read_display_number(int fd) {
    std::string number;
    for (int waited_ms = 0; waited_ms < 20000;) {
        pollfd p{fd, POLLIN, 0};
        const int ready = ::poll(&p, 1, 100);
        if (ready == 0) {
            waited_ms += 100;
            continue;
        }
        char c = 0;
        if (ready < 0 || ::read(fd, &c, 1) != 1)
            return "";
        if (c == '\n')
            return number;
        number += c;
    }
    return "";
}

}  // namespace private_display_detail

// Starts an Xvfb for this process (once; it stops when the process exits) and points DISPLAY at
// it. False with `why` when the server is missing or does not start; DISPLAY is then unchanged.
inline bool use_private_display(std::string& why) {
    using namespace private_display_detail;
    if (server_pid() > 0)
        return true;
    int fds[2];
    if (::pipe(fds) != 0) {
        why = "cannot make a pipe for the virtual display";
        return false;
    }
    const pid_t pid = ::fork();
    if (pid < 0) {
        why = "cannot start the virtual display";
        ::close(fds[0]);
        ::close(fds[1]);
        return false;
    }
    if (pid == 0) {
        // A test killed by its time-out must not leave its display behind.
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        ::close(fds[0]);
        const int quiet = ::open("/dev/null", O_WRONLY);
        ::dup2(quiet, STDOUT_FILENO);
        ::dup2(quiet, STDERR_FILENO);
        const std::string fd = std::to_string(fds[1]);
        ::execlp("Xvfb", "Xvfb", "-displayfd", fd.c_str(), "-screen", "0", "1920x1080x24",
                 "-nolisten", "tcp", static_cast<char*>(nullptr));
        ::_exit(127);
    }
    ::close(fds[1]);
    const std::string number = read_display_number(fds[0]);
    ::close(fds[0]);
    server_pid() = pid;
    if (number.empty()) {
        stop_server();
        why = "Xvfb did not start (is the package xvfb installed?)";
        return false;
    }
    ::setenv("DISPLAY", (":" + number).c_str(), 1);
    std::atexit(stop_server);
    return true;
}

}  // namespace veldra::testing
