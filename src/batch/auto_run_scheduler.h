#pragma once
// The decisions of a parallel auto run (auto_run_jobs), kept apart from its processes, pipes
// and files so that they can be checked on their own: which chunk of the run list a worker
// plays next, which finished chunks may join the output (strictly in list order, so the output
// is always a prefix of what one process writes), and when the run is over. The loop in
// auto_run_jobs.cpp reports what happened to the workers and carries out the answers.

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "trials/auto_run_plan.h"

namespace veldra {

class AutoRunScheduler {
public:
    AutoRunScheduler(std::vector<RunRange> chunks, std::size_t workers);

    // An order for a worker that plays nothing: play `chunk`, or, without one, expect no more
    // (its input is closed and it ends).
    struct Handout {
        std::size_t worker;
        std::optional<std::size_t> chunk;
    };
    // The orders for every worker still alive that has no chunk and has not been let go yet.
    // Chunks go out in list order; after an interrupt none goes out.
    std::vector<Handout> handouts();

    // The worker reported its chunk played in full.
    void chunk_done(std::size_t worker);
    // The worker's process ended with `status` (0, a code, or 128 + a signal). A chunk it still
    // held ends with that status (1 when it exited 0 without reporting the chunk done) and
    // true is returned; false when it held none, so the status decides nothing here.
    bool worker_ended(std::size_t worker, int status);
    // A worker that never started: it plays nothing.
    void worker_lost(std::size_t worker);
    // Ctrl-C: no more chunks go out; the ones being played end as their workers stop.
    void interrupt();

    // The next chunk in list order, once its worker has ended it, with that status: 0 when
    // complete, else the run fails after its whole lines have joined the output.
    struct Ended {
        std::size_t chunk;
        int status;
    };
    std::optional<Ended> next_to_join() const;
    // The chunk of next_to_join() is in the output.
    void joined();
    // The output could not be written: nothing more joins.
    void fail();

    // Every chunk joined the output, complete.
    bool finished() const { return joined_ == chunks_.size(); }
    // The run cannot be finished: a chunk stopped early, the output failed, every worker is
    // gone with chunks left, or an interrupt came before the next chunk to join was handed out.
    bool failed() const;

    bool worker_alive(std::size_t worker) const { return !workers_[worker].ended; }
    // Runs of the chunks that joined the output.
    std::size_t joined_runs() const { return joined_runs_; }
    // The chunks handed out that have not joined yet: [first, last).
    std::pair<std::size_t, std::size_t> chunks_in_play() const { return {joined_, handed_out_}; }

private:
    struct Chunk {
        RunRange range;
        std::optional<int> status;  // set once its worker reported it done or ended
    };
    struct Worker {
        std::optional<std::size_t> chunk;
        bool let_go = false;
        bool ended = false;
    };

    std::vector<Chunk> chunks_;
    std::vector<Worker> workers_;
    std::size_t handed_out_ = 0;
    std::size_t joined_ = 0;
    std::size_t joined_runs_ = 0;
    bool interrupted_ = false;
    bool failed_ = false;
};

}  // namespace veldra
