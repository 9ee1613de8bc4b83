#pragma once
// The auto run from the shell, as a run mode; the batch machinery it drives is in batch/.

#include "config/program_parameters.h"

namespace veldra {

struct AppState;

// An auto run started from the shell: checks the parameters, then runs the batch in this
// process, in worker processes (auto_run_jobs, batch/auto_run_jobs.h), or one shard of it
// (auto_run_shard). Ends the program with 0 when done, 1 on a failure, 2 for bad parameters,
// 130 when interrupted. A worker process of a parallel run starts here too.
void start_auto_run_mode(AppState& app, const ProgramParameters& params);

// auto_run_merge: joins shard outputs into auto_run_output.
void start_auto_run_merge_mode(AppState& app, const ProgramParameters& params);

}  // namespace veldra
