#pragma once
#include <cstdint>
#include <string>

#include "config/program_parameters.h"

namespace veldra {

struct AppState;
class Files;

// An auto run started from the shell: checks the parameters, then runs the batch in this
// process, in worker processes (auto_run_jobs), or one shard of it (auto_run_shard). Ends the
// program with 0 when done, 1 on a failure, 2 for bad parameters, 130 when interrupted.
void start_auto_run_mode(AppState& app, const ProgramParameters& params);

// auto_run_merge: joins shard outputs into auto_run_output.
void start_auto_run_merge_mode(AppState& app, const ProgramParameters& params);

// A parallel auto run (auto_run_jobs): worker processes of this program play chunks of the run
// list; returns the exit status.
// What start_auto_run_mode learned of a run before starting it.
struct PreparedRun {
    std::size_t runs = 0;  // length of the whole run list
    std::string identity;  // the fingerprint of its inputs (auto_run_fingerprint.h)
};

inline constexpr std::uint64_t MAX_AUTO_RUN_JOBS = 256;

struct AutoRunJobsRequest {
    std::size_t jobs = 2;
    double seed = 0;
    std::string output;
    PreparedRun run;
};
int run_auto_run_jobs(Files& files, const ProgramParameters& params,
                      const AutoRunJobsRequest& request);

// How a worker knows it is one: this environment variable is set to 1. It then reads its
// chunks from standard input, one line "FIRST LAST PART" each (runs [FIRST, LAST) of the list,
// written to the file PART), answers "done" on auto_run_worker_reply_fd after each, and ends at
// the end of its input.
inline constexpr const char* auto_run_worker_environment = "VELDRA_AUTO_RUN_WORKER";
inline constexpr int auto_run_worker_reply_fd = 3;

}  // namespace veldra
