#pragma once
#include "config/program_parameters.h"

namespace veldra {

// An auto run started from the shell: checks the parameters, then runs the batch in this
// process, in worker processes (auto_run_jobs), or one shard of it (auto_run_shard). Ends the
// program with 0 when done, 1 on a failure, 2 for bad parameters, 130 when interrupted.
void start_auto_run_mode(const ProgramParameters& params);

// auto_run_merge: joins shard outputs into auto_run_output.
void start_auto_run_merge_mode(const ProgramParameters& params);

// Worker processes of a parallel auto run; returns the exit status.
struct AutoRunJobsRequest {
    std::size_t jobs = 2;
    double seed = 0;
    std::string output;
};
int run_auto_run_jobs(const ProgramParameters& params, const AutoRunJobsRequest& request);

}  // namespace veldra
