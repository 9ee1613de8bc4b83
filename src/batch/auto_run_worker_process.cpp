#include "batch/auto_run_worker_process.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <csignal>

#include "batch/auto_run_jobs.h"
#include "platform/executable_path.h"
#include "platform/pipe.h"
#include "runtime/number_format.h"

namespace veldra {

std::optional<AutoRunWorkerProcess> AutoRunWorkerProcess::start(const ProgramParameters& params,
                                                                double seed) {
    const auto self = platform::executable_path();
    auto commands = platform::Pipe::create();
    auto replies = platform::Pipe::create();
    if (!self || !commands || !replies)
        return std::nullopt;
    std::vector<std::string> args = {self->string(), "headless=1",
                                     "auto_run_config=" + *params.auto_run_config,
                                     "auto_run_seed=" + number_to_string(seed)};
    if (params.config)
        args.push_back("config=" + *params.config);
    if (params.lang)
        args.push_back("lang=" + *params.lang);
    std::vector<std::string> environment = {std::string(auto_run_worker_environment) + "=1"};
    for (std::string& entry : platform::current_environment())
        environment.push_back(std::move(entry));
    auto process =
        platform::ChildProcess::spawn(args, environment,
                                      {{commands->read_end().get(), STDIN_FILENO},
                                       {replies->write_end().get(), auto_run_worker_reply_fd}});
    if (!process)
        return std::nullopt;
    // The worker's ends close here as the pipes go, so its exit shows as the end of its answers.
    return AutoRunWorkerProcess(std::move(*process), std::move(commands->write_end()),
                                std::move(replies->read_end()));
}

void AutoRunWorkerProcess::send_chunk(RunRange range, const std::string& part) {
    const std::string line =
        std::to_string(range.first) + " " + std::to_string(range.last) + " " + part + "\n";
    if (!platform::write_all(commands_.get(), line))
        commands_.close();
}

AutoRunWorkerProcess::Reply AutoRunWorkerProcess::read_reply() {
    char buffer[64];
    const auto got = platform::read_some(replies_.get(), buffer, sizeof buffer);
    // The worker holds the other end until it exits, so the end of its answers is its end.
    if (!got || *got == 0)
        return Reply::ended;
    // A line is far shorter than the pipe's atomic write, so it arrives whole.
    const char* begin = buffer;
    const char* end = buffer + *got;
    if (std::find(begin, end, '\n') == end)
        return Reply::nothing_yet;
    std::uint64_t errors = 0;
    const char* digits = std::find(begin, end, ' ');
    if (digits != end && std::from_chars(digits + 1, end, errors).ec == std::errc())
        zero_weight_errors_ = errors;
    return Reply::chunk_done;
}

void AutoRunWorkerProcess::interrupt() {
    // Not SIGINT: a worker of a run started in the background ignores it, as its parent does.
    process_.kill(SIGTERM);
}

int AutoRunWorkerProcess::wait() {
    commands_.close();
    replies_.close();
    return process_.wait();
}

}  // namespace veldra
