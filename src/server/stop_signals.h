#pragma once
// SIGTERM and SIGINT as a request to stop, taken by one thread with sigwait() rather than in a
// handler, so that stopping can do what a handler may not (lock, close sockets, log).

#include <atomic>
#include <functional>
#include <thread>

namespace veldra {

class StopSignals {
public:
    // Blocks the signals in the calling thread and every thread it starts afterwards: construct
    // before any other thread exists. Nothing happens until watch().
    StopSignals();
    // Ends the watching thread if it still runs (the program is stopping for another reason).
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    // Calls `try_stop` (on the watching thread) when a signal arrives, and again every 100 ms
    // until it returns true or finished() is called: a stop that arrives before the service
    // listens is not lost, and a stop is asked for once only.
    void watch(std::function<bool()> try_stop);
    void finished();

private:
    std::thread watcher_;
    std::atomic<bool> finished_{false};
};

}  // namespace veldra
