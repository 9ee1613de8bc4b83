#include "server/stop_signals.h"

#include <pthread.h>
#include <signal.h>

#include <chrono>

namespace veldra {

namespace {

sigset_t stop_signal_set() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGINT);
    return set;
}

}  // namespace

StopSignals::StopSignals() {
    const sigset_t set = stop_signal_set();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    // A client that hangs up mid-answer must not end the server.
    signal(SIGPIPE, SIG_IGN);
}

StopSignals::~StopSignals() {
    finished();
    if (watcher_.joinable()) {
        // Wakes sigwait() when no signal came; the signal stays blocked, so nothing else sees it.
        pthread_kill(watcher_.native_handle(), SIGTERM);
        watcher_.join();
    }
}

void StopSignals::watch(std::function<bool()> try_stop) {
    watcher_ = std::thread([this, try_stop = std::move(try_stop)] {
        const sigset_t set = stop_signal_set();
        int signal_number = 0;
        sigwait(&set, &signal_number);
        while (!finished_ && !try_stop())
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
    });
}

void StopSignals::finished() {
    finished_ = true;
}

}  // namespace veldra
