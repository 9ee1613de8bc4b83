#pragma once
// The real veldra-server as a child process of a test: its standard output is read line by line
// (the first line says the port it bound), and it is stopped with SIGTERM as a service manager
// would. Every wait is bounded, so a hung server fails the test instead of hanging it.

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace veldra::testing {

class ServerProcess {
public:
    explicit ServerProcess(const std::vector<std::string>& arguments) {
        int fds[2];
        if (pipe2(fds, O_CLOEXEC) != 0)
            return;
        pid_ = fork();
        if (pid_ == 0) {
            dup2(fds[1], STDOUT_FILENO);
            close(fds[0]);
            close(fds[1]);
            std::vector<char*> argv;
            std::string program = VELDRA_SERVER_PROGRAM;
            argv.push_back(program.data());
            std::vector<std::string> copies = arguments;
            for (std::string& argument : copies)
                argv.push_back(argument.data());
            argv.push_back(nullptr);
            execv(argv[0], argv.data());
            _exit(127);
        }
        close(fds[1]);
        out_ = fds[0];
    }
    ~ServerProcess() {
        if (pid_ > 0 && !status_) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
        if (out_ >= 0)
            close(out_);
    }
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    // The next line of output without its "\n"; nullopt at the end of the output or after ten
    // seconds without one.
    std::optional<std::string> read_line() {
        std::string line;
        while (true) {
            pollfd ready{.fd = out_, .events = POLLIN, .revents = 0};
            if (poll(&ready, 1, 10000) <= 0)
                return std::nullopt;
            char c = 0;
            if (read(out_, &c, 1) != 1)
                return line.empty() ? std::nullopt : std::optional<std::string>(line);
            if (c == '\n')
                return line;
            line.push_back(c);
            all_output_.push_back(c);
        }
    }
    // The port of the "listening on http://127.0.0.1:PORT/" line (or https); 0 when it did not
    // come.
    int wait_until_listening() {
        const std::optional<std::string> line = read_line();
        if (!line)
            return 0;
        for (const std::string scheme : {"http", "https"}) {
            const std::string start = "listening on " + scheme + "://127.0.0.1:";
            if (const std::size_t at = line->find(start); at != std::string::npos)
                return std::stoi(line->substr(at + start.size()));
        }
        return 0;
    }
    // Sends SIGTERM and gives the exit status (-1 when it did not end within ten seconds); the
    // rest of its output is then in output().
    int terminate() {
        kill(pid_, SIGTERM);
        return wait_for_exit();
    }
    int wait_for_exit() {
        while (read_line()) {
        }
        for (int i = 0; i < 1000 && !status_; ++i) {
            int status = 0;
            if (waitpid(pid_, &status, WNOHANG) == pid_)
                status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            else
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return status_.value_or(-1);
    }
    const std::string& output() const { return all_output_; }

private:
    pid_t pid_ = -1;
    int out_ = -1;
    std::optional<int> status_;
    std::string all_output_;
};

}  // namespace veldra::testing
