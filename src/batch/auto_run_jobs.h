#pragma once
// A parallel auto run (auto_run_jobs): worker processes of this program play chunks of the run
// list, and the parent joins their lines into the one output a single process would write.

#include <cstddef>
#include <cstdint>
#include <string>

#include "config/program_parameters.h"

namespace veldra {

class Files;

// What the auto run mode learned of a run before starting it.
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
// Plays the run with `request.jobs` workers; returns the exit status (0 done, 1 failed, 130
// interrupted).
int run_auto_run_jobs(Files& files, const ProgramParameters& params,
                      const AutoRunJobsRequest& request);

// How a worker knows it is one: this environment variable is set to 1. It then reads its
// chunks from standard input, one line "FIRST LAST PART" each (runs [FIRST, LAST) of the list,
// written to the file PART), answers "done ERRORS" on auto_run_worker_reply_fd after each
// (ERRORS: the zero-weight errors it has logged so far), and ends at the end of its input.
inline constexpr const char* auto_run_worker_environment = "VELDRA_AUTO_RUN_WORKER";
inline constexpr int auto_run_worker_reply_fd = 3;

}  // namespace veldra
