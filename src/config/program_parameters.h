#pragma once
// What the command line says: `key=value` arguments, split at "=". Unknown keys and arguments
// without "=" are ignored without a message, so a launcher may pass extra arguments safely.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veldra {

// One row per parameter: name, one-line meaning for --help. Adding a parameter is one line.
#define VELDRA_PROGRAM_PARAMETERS(X)                                                              \
    X(user_id, "user ID for a session against the research server")                               \
    X(submit_outbox, "1 sends the trial results waiting in the outbox to the research server")    \
    X(demo, "1 starts a local session of the configuration's levels at once (a kiosk)")           \
    X(config,                                                                                     \
      "custom configuration file laid over configurations.json (\".json\" may be left out)")      \
    X(lang, "language code of the texts, e.g. en or de (file localization/<code>.ini)")           \
    X(auto_run_config,                                                                            \
      "auto-run file (JSON: levels, num_runs_per_permutation); starts an auto run")               \
    X(auto_run_seed, "seed of the auto run (a number); random when left out")                     \
    X(auto_run_output, "CSV file the auto run writes")                                            \
    X(log_output_file, "file that receives a copy of the log")                                    \
    X(headless, "1 runs with no window, no sound and no dialogs")                                 \
    X(frames, "stop after this many frames")                                                      \
    X(auto_run_jobs, "run the auto run in this many worker processes (same output bytes)")        \
    X(auto_run_shard,                                                                             \
      "K/N: run only the K-th of N contiguous parts of the auto run (cluster jobs)")              \
    X(auto_run_merge, "PART1,PART2,...: join shard outputs into auto_run_output")                 \
    X(auto_run_resume, "1 continues an interrupted auto run's output file")                       \
    X(verbose, "1 also prints information lines of the log on stderr in headless runs")           \
    X(generate_levels, "level-set generator file (JSON); writes a set of levels into output_dir") \
    X(output_dir, "directory the level-set generator writes into")                                \
    X(seed,                                                                                       \
      "seed of a single trial, or the one that replaces the generator file's seed (a number)")    \
    X(trial_level, "level file: runs one automatic trial and prints its result as JSON")          \
    X(traits, "traits of the single trial's player: O,C,E,A,N (default 0,0,0,0,0)")               \
    X(play_level,                                                                                 \
      "level file: play one trial in the window (seed= and traits= as for trial_level)")          \
    X(record_inputs, "file the played trial's inputs are recorded to (default: beside the log)")  \
    X(replay, "input recording: play that trial again and check it reaches the same result")      \
    X(screenshot, "PNG file the last frame is written to when the program ends (with frames=N)")  \
    X(volume, "sound volume from 0 (silent) to 1 (full, the default)")                            \
    X(frame_times,                                                                                \
      "CSV file each frame's duration is written to (benchmarks; frames are not paced)")          \
    X(camera_zoom,                                                                                \
      "the window's starting zoom: a number from 0.25 to 2, or \"fit\" for the whole level")      \
    X(developer_keys, "1 lets P pause and +/- change the game speed in a played trial")           \
    X(window_size,                                                                                \
      "WIDTHxHEIGHT of the window in pixels (default 1600x900); the picture scales to it")        \
    X(ui_script, "file of clicks, keys and waits played into the window (demos, windowed tests)")

struct ProgramParameters {
#define VELDRA_DECLARE_PARAMETER(name, help) std::optional<std::string> name;
    VELDRA_PROGRAM_PARAMETERS(VELDRA_DECLARE_PARAMETER)
#undef VELDRA_DECLARE_PARAMETER

    // By name, for code that takes the key from data; nullptr for an unknown name.
    std::optional<std::string>* field(std::string_view name);
};

struct ProgramParameterInfo {
    std::string_view name;
    std::string_view help;
};
const std::vector<ProgramParameterInfo>& program_parameter_table();

// Reads every argument from index 0 (the program's own path) to the last.
ProgramParameters get_program_parameters(const std::vector<std::string>& arguments);

}  // namespace veldra
