#pragma once
// A worker of a parallel auto run as its parent sees it: the process, the pipe that carries
// its chunks ("FIRST LAST PART" lines on its standard input) and the pipe of its answers (one
// "done ERRORS" line per chunk on auto_run_worker_reply_fd, ERRORS counting the zero-weight
// errors it has logged so far), as auto_run_jobs.h describes.

#include <cstdint>
#include <optional>
#include <string>

#include "config/program_parameters.h"
#include "platform/child_process.h"
#include "platform/file_descriptor.h"
#include "trials/auto_run_plan.h"

namespace veldra {

class AutoRunWorkerProcess {
public:
    // Starts this program as a worker of the run `params` describes, with `seed`; nullopt when
    // it cannot be started.
    static std::optional<AutoRunWorkerProcess> start(const ProgramParameters& params, double seed);

    ~AutoRunWorkerProcess() = default;
    AutoRunWorkerProcess(const AutoRunWorkerProcess&) = delete;
    AutoRunWorkerProcess& operator=(const AutoRunWorkerProcess&) = delete;
    AutoRunWorkerProcess(AutoRunWorkerProcess&&) noexcept = default;
    AutoRunWorkerProcess& operator=(AutoRunWorkerProcess&&) noexcept = default;

    // Until wait() has collected its exit status.
    bool running() const { return process_.running(); }
    // Readable when it has answered or ended.
    int reply_fd() const { return replies_.get(); }

    // Tells it to play runs [range.first, range.last) into the file `part`. When it is gone its
    // input is closed instead; its exit, read later, tells what became of the chunk.
    void send_chunk(RunRange range, const std::string& part);
    // No more chunks: it ends after the one it plays.
    void close_commands() { commands_.close(); }
    // Reads its answers once reply_fd() is readable.
    enum class Reply { nothing_yet, chunk_done, ended };
    Reply read_reply();
    // How often its trials' weights added up to zero or less, as of its last "done".
    std::uint64_t zero_weight_errors() const { return zero_weight_errors_; }
    // Forwards Ctrl-C: it stops after the trial in progress.
    void interrupt();
    // Closes both pipes and waits for it to end; its exit status as a shell reports it.
    int wait();

private:
    AutoRunWorkerProcess(platform::ChildProcess process, platform::FileDescriptor commands,
                         platform::FileDescriptor replies)
        : process_(std::move(process)),
          commands_(std::move(commands)),
          replies_(std::move(replies)) {}

    platform::ChildProcess process_;
    platform::FileDescriptor commands_;  // its standard input
    platform::FileDescriptor replies_;   // its answers
    std::uint64_t zero_weight_errors_ = 0;
};

}  // namespace veldra
