#pragma once
// The output files of auto runs as a shell user handles them: resuming an interrupted file,
// joining the parts of a sharded or parallel run, and refusing an output that would overwrite
// one of the run's own inputs.

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace veldra {

class Files;

// How many complete runs an existing output file holds; at most `most` are expected. A line cut
// short by a kill is removed so the next run appends cleanly. nullopt (logged) when the file is
// not an auto-run output, holds more runs than expected, or a line that is not a trial record;
// 0 when it does not exist yet. Read through `files`; the cut is made on the disk, where the
// output is then appended to.
std::optional<std::size_t> auto_run_count_finished_runs(Files& files, const std::string& path,
                                                        std::size_t most);

// Appends the data lines of `part` (every line after its header) to the open output, checking
// every write. False (logged with the path and the reason) when the part cannot be read, does
// not start with the trial CSV header, or the output cannot be written. The part is read
// through `files`.
bool auto_run_append_part(Files& files, std::FILE* output, const std::string& output_name,
                          const std::string& part);

// Writes the header and the data lines of every part, in order, to `output`, through a temporary
// file that replaces `output` only when all went well. The parts must be consecutive, complete
// pieces of one run (their fingerprints say so); the output gets the fingerprint of the whole.
bool auto_run_merge_parts(Files& files, const std::vector<std::string>& parts,
                          const std::string& output);

// The input (of `inputs`) that `output` would overwrite, or nullopt when it overwrites none.
std::optional<std::string> auto_run_output_clobbers(const std::string& output,
                                                    const std::vector<std::string>& inputs);

// Writes all of `bytes` and flushes; false (logged as "Failed to write "<name>": <reason>.")
// when the disk is full or the file is gone.
bool auto_run_write(std::FILE* file, const std::string& name, const std::string& bytes);

}  // namespace veldra
