#pragma once
// The output files of auto runs as a shell user handles them: resuming an interrupted file,
// joining the parts of a sharded or parallel run.

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace veldra {

// How many complete runs an existing output file holds. A line cut short by a kill is removed
// so the next run appends cleanly. nullopt (logged) when the file is not an auto-run output;
// 0 when it does not exist yet.
std::optional<std::size_t> auto_run_count_finished_runs(const std::string& path);

// Appends the data lines of `part` (every line after its header) to the open output. False
// when the part is missing or does not start with the trial CSV header.
bool auto_run_append_part(std::FILE* output, const std::string& part);

// Writes the header and the data lines of every part, in order, to `output`.
bool auto_run_merge_parts(const std::vector<std::string>& parts, const std::string& output);

}  // namespace veldra
