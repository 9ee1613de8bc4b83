#include "batch/auto_run_scheduler.h"

#include <algorithm>

namespace veldra {

AutoRunScheduler::AutoRunScheduler(std::vector<RunRange> chunks, std::size_t workers)
    : workers_(workers) {
    for (const RunRange& range : chunks)
        chunks_.push_back({range, std::nullopt});
}

std::vector<AutoRunScheduler::Handout> AutoRunScheduler::handouts() {
    std::vector<Handout> orders;
    for (std::size_t w = 0; w < workers_.size(); ++w) {
        Worker& worker = workers_[w];
        if (worker.ended || worker.chunk || worker.let_go)
            continue;
        if (handed_out_ < chunks_.size() && !interrupted_) {
            worker.chunk = handed_out_++;
            orders.push_back({w, worker.chunk});
        } else {
            worker.let_go = true;
            orders.push_back({w, std::nullopt});
        }
    }
    return orders;
}

void AutoRunScheduler::chunk_done(std::size_t worker) {
    Worker& playing = workers_[worker];
    if (!playing.chunk)
        return;
    chunks_[*playing.chunk].status = 0;
    playing.chunk.reset();
}

bool AutoRunScheduler::worker_ended(std::size_t worker, int status) {
    Worker& ended = workers_[worker];
    ended.ended = true;
    if (!ended.chunk)
        return false;
    chunks_[*ended.chunk].status = status == 0 ? 1 : status;
    ended.chunk.reset();
    return true;
}

void AutoRunScheduler::worker_lost(std::size_t worker) {
    workers_[worker].ended = true;
}

void AutoRunScheduler::interrupt() {
    interrupted_ = true;
}

std::optional<AutoRunScheduler::Ended> AutoRunScheduler::next_to_join() const {
    if (failed_ || finished() || !chunks_[joined_].status)
        return std::nullopt;
    return Ended{joined_, *chunks_[joined_].status};
}

void AutoRunScheduler::joined() {
    const Chunk& chunk = chunks_[joined_];
    // Lines after a chunk that stopped early would leave a gap in the output.
    if (chunk.status != 0) {
        failed_ = true;
        return;
    }
    joined_runs_ += chunk.range.last - chunk.range.first;
    ++joined_;
}

void AutoRunScheduler::fail() {
    failed_ = true;
}

bool AutoRunScheduler::failed() const {
    if (failed_)
        return true;
    if (finished() || chunks_[joined_].status)
        return false;
    const bool no_worker_left =
        std::all_of(workers_.begin(), workers_.end(), [](const Worker& w) { return w.ended; });
    return no_worker_left || (interrupted_ && joined_ >= handed_out_);
}

}  // namespace veldra
