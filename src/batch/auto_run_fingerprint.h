#pragma once
// What an auto run's CSV output belongs to. Beside every output (and every shard part) the run
// writes OUTPUT.fingerprint: a digest of everything that decides the results (seed, the
// configuration files in effect, the auto-run file, every level it names, the program version)
// and the part of the run list the file holds. Resume and merge read it back and refuse a file
// of another run, so a researcher cannot continue or join the wrong data by a slip of a path.
// The CSV itself stays exactly as one process writes it.

#include <cstddef>
#include <optional>
#include <string>

#include "config/program_parameters.h"
#include "trials/auto_run_plan.h"

namespace veldra {

struct ConfigsState;
class Files;

struct AutoRunFingerprint {
    std::string identity;  // hex digest of the run's inputs
    std::size_t runs = 0;  // length of the whole run list
    RunRange range;        // the part of the list this file holds

    bool operator==(const AutoRunFingerprint&) const = default;
};

std::string auto_run_fingerprint_path(const std::string& output);

// The fingerprint of the run these parameters describe, with the configuration files `game`
// was loaded from; nullopt (logged) when an input file cannot be read through `files`.
std::optional<std::string> auto_run_identity(Files& files, const ProgramParameters& params,
                                             const ConfigsState& game, double seed,
                                             const AutoRunConfigs& configs);

// Written through `files` (an atomic replace); false (logged with the path and reason) when it
// fails.
bool auto_run_write_fingerprint(Files& files, const std::string& output,
                                const AutoRunFingerprint& fingerprint);

// nullopt when the file is missing or malformed; `why` then says which.
std::optional<AutoRunFingerprint> auto_run_read_fingerprint(Files& files, const std::string& output,
                                                            std::string& why);

}  // namespace veldra
