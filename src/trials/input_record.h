#pragma once
// The record of an interactive trial: what it was played with (level, configuration, seed,
// traits), every command the player gave with the tick it took effect at, and how it ended.
// Playing the commands again on the same inputs reaches the same TrialResult, in a window or
// headless, so a researcher can watch any participant's trial again.
//
// The file is text, one item per line, small enough to read by eye:
//
//   veldra-inputs 1
//   level levels/level_05.txt
//   level_digest 3f1c...
//   configuration_digest 9a0b...
//   seed 3
//   traits 1,0,0,0,-1
//   move 120 1 0          (tick, held direction dx dy; 0 0 lets go)
//   target 300 832 416    (tick, clicked world point in pixels)
//   result survived 0 2 5 3 4.25 17.5
//   end
//
// A trial the player left before its end has "abandoned TICK" instead of "result ...".

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/personality_traits.h"
#include "creatures/player_commands.h"
#include "trials/trial_result.h"
#include "util/ticks.h"

namespace veldra {

class Files;
struct ConfigsState;

inline constexpr std::size_t MAX_INPUT_RECORD_FILE_BYTES = 16u << 20;

struct InputRecord {
    std::string level_path;  // as the player gave it
    std::string level_digest;
    std::string configuration_digest;
    double seed = 0;
    PersonalityTraits traits;
    std::vector<PlayerCommand> commands;  // in the order they took effect
    std::optional<TrialResult> result;    // none when the trial was abandoned
    Ticks abandoned_at = 0;               // the ticks spent when it was left, without a result
};

std::string input_record_to_text(const InputRecord& record);
// nullopt when the text is not a whole recording; `why` then says what is wrong, with the line.
std::optional<InputRecord> input_record_parse(std::string_view text, std::string& why);

// What a recording is checked against before it is played: the bytes of the level file and of
// the configuration files in effect (their contents, not their paths, so a recording made on
// one machine plays on another).
std::string level_digest_of(std::string_view level_file_text);
// nullopt, with the reason in `why`, when a configuration file cannot be read.
std::optional<std::string> configuration_digest_of(Files& files, const ConfigsState& configs,
                                                   std::string& why);

bool trial_results_equal(const TrialResult& a, const TrialResult& b);

}  // namespace veldra
