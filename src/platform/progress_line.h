#pragma once
// Progress of a long shell run on stderr: one line rewritten in place on a terminal, plain
// lines (at most one every few seconds) when stderr is a file or a pipe.

#include <chrono>
#include <cstddef>
#include <string>

namespace veldra {

class ProgressLine {
public:
    explicit ProgressLine(std::string label);
    void update(std::size_t done, std::size_t total);
    // Ends the in-place line; returns the seconds since construction.
    double finish();
    double elapsed_seconds() const;

private:
    std::string label_;
    std::chrono::steady_clock::time_point start_;
    std::chrono::steady_clock::time_point last_print_;
    bool terminal_;
    bool printed_in_place_ = false;
};

}  // namespace veldra
