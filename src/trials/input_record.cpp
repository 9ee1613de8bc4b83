#include "trials/input_record.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <vector>

#include "config/game_configurations.h"
#include "runtime/file_io.h"
#include "runtime/files.h"
#include "util/digest.h"
#include "util/text.h"

namespace veldra {

namespace {

constexpr std::string_view MAGIC = "veldra-inputs 1";
// Far beyond any trial (a day of play is about five million ticks), small enough that no
// arithmetic on a tick can overflow.
constexpr Ticks MAX_TICK = Ticks{1} << 40;
constexpr double MAX_COORDINATE = 1e7;
// Seeds are whole numbers that a double holds exactly (2^53), as on the command line.
constexpr double MAX_SEED = 9007199254740992.0;

std::string number(double v) {
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", v);
    return text;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    while (true) {
        const std::size_t end = text.find(separator, start);
        parts.push_back(text.substr(start, end - start));
        if (end == std::string_view::npos)
            return parts;
        start = end + 1;
    }
}

std::optional<double> parse_real(std::string_view text) {
    double v = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(v))
        return std::nullopt;
    return v;
}

std::optional<std::int64_t> parse_whole(std::string_view text, std::int64_t low,
                                        std::int64_t high) {
    std::int64_t v = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (error != std::errc() || end != text.data() + text.size() || v < low || v > high)
        return std::nullopt;
    return v;
}

bool is_digest(std::string_view text) {
    if (text.size() != 16)
        return false;
    for (char c : text)
        if (!((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f')))
            return false;
    return true;
}

// Reads the lines after the magic one. Each problem names its line, counted from 1.
class RecordParser {
public:
    std::optional<InputRecord> parse(std::string_view text, std::string& why) {
        std::vector<std::string_view> lines = split(string_without_utf8_bom(text), '\n');
        if (lines.empty() || strip(lines[0]) != MAGIC) {
            why =
                "is not an input recording: it does not begin with \"" + std::string(MAGIC) + "\"";
            return std::nullopt;
        }
        for (line_ = 2; line_ <= lines.size(); ++line_) {
            const std::string_view line = strip(lines[line_ - 1]);
            if (line.empty())
                continue;
            if (ended_) {
                fail(why, "there is more after the end line");
                return std::nullopt;
            }
            if (!read_line(line, why))
                return std::nullopt;
        }
        if (!ended_) {
            why = "is truncated: it has no end line (the trial was not saved to its end)";
            return std::nullopt;
        }
        for (const char* field :
             {"level", "level_digest", "configuration_digest", "seed", "traits"})
            if (!seen(field)) {
                why = std::string("has no ") + field + " line";
                return std::nullopt;
            }
        if (!record_.result && !abandoned_) {
            why = "has neither a result nor an abandoned line";
            return std::nullopt;
        }
        return std::move(record_);
    }

private:
    static std::string_view strip(std::string_view line) {
        while (!line.empty() && (line.back() == '\r' || line.back() == ' '))
            line.remove_suffix(1);
        return line;
    }

    // Always false, so a check can end with `return fail(...)`.
    bool fail(std::string& why, const std::string& problem) const {
        why = "has an error on line " + std::to_string(line_) + ": " + problem;
        return false;
    }

    bool seen(const std::string& field) const {
        for (const std::string& f : fields_)
            if (f == field)
                return true;
        return false;
    }

    bool header(const std::string& field, std::string& why) {
        if (seen(field)) {
            fail(why, "a second " + field + " line");
            return false;
        }
        if (!record_.commands.empty() || record_.result || abandoned_) {
            fail(why, "the " + field + " line comes after the commands");
            return false;
        }
        fields_.push_back(field);
        return true;
    }

    bool read_line(std::string_view line, std::string& why) {
        const std::size_t space = line.find(' ');
        const std::string keyword(line.substr(0, space));
        const std::string_view rest =
            space == std::string_view::npos ? std::string_view{} : line.substr(space + 1);
        const std::vector<std::string_view> args =
            rest.empty() ? std::vector<std::string_view>{} : split(rest, ' ');
        if (keyword == "end") {
            ended_ = true;
            return true;
        }
        if (record_.result || abandoned_) {
            fail(why, "\"" + keyword + "\" after the trial's end");
            return false;
        }
        if (keyword == "level") {
            if (!header(keyword, why))
                return false;
            if (rest.empty())
                return fail(why, "the level path is empty");
            record_.level_path = std::string(rest);
            return true;
        }
        if (keyword == "level_digest" || keyword == "configuration_digest") {
            if (!header(keyword, why))
                return false;
            if (!is_digest(rest))
                return fail(why, keyword + " is not 16 hexadecimal digits");
            (keyword == "level_digest" ? record_.level_digest : record_.configuration_digest) =
                std::string(rest);
            return true;
        }
        if (keyword == "seed") {
            if (!header(keyword, why))
                return false;
            const auto seed = parse_real(rest);
            if (!seed || *seed != std::floor(*seed))
                return fail(why, "the seed is not a whole number");
            if (std::fabs(*seed) > MAX_SEED)
                return fail(why, "the seed is too large: at most " + number(MAX_SEED) +
                                     " either side of 0");
            record_.seed = *seed;
            return true;
        }
        if (keyword == "traits")
            return read_traits(rest, why);
        if (keyword == "move" || keyword == "target")
            return read_command(keyword, args, why);
        if (keyword == "result")
            return read_result(args, why);
        if (keyword == "abandoned") {
            const auto tick = args.size() == 1 ? parse_whole(args[0], 0, MAX_TICK) : std::nullopt;
            if (!tick)
                return fail(why, "abandoned needs the ticks spent");
            record_.abandoned_at = *tick;
            abandoned_ = true;
            return true;
        }
        return fail(why, "unknown line \"" + keyword + "\"");
    }

    bool read_traits(std::string_view rest, std::string& why) {
        if (!header("traits", why))
            return false;
        const std::vector<std::string_view> parts = split(rest, ',');
        double values[5];
        if (parts.size() != 5)
            return fail(why, "traits needs five numbers O,C,E,A,N");
        for (std::size_t i = 0; i < 5; ++i) {
            const auto v = parse_real(parts[i]);
            if (!v || std::fabs(*v) > MAX_TRAIT_MAGNITUDE)
                return fail(why,
                            "traits needs five numbers O,C,E,A,N, each from -1000000000 to "
                            "1000000000");
            values[i] = *v;
        }
        record_.traits = PersonalityTraits{values[0], values[1], values[2], values[3], values[4]};
        return true;
    }

    bool read_command(const std::string& keyword, const std::vector<std::string_view>& args,
                      std::string& why) {
        if (args.size() != 3)
            return fail(why, keyword + " needs a tick and two numbers");
        const auto tick = parse_whole(args[0], 0, MAX_TICK);
        if (!tick)
            return fail(why, "the tick " + whole_number_problem(args[0], 0, MAX_TICK));
        if (*tick < last_tick_)
            return fail(why, "the ticks go backwards");
        last_tick_ = *tick;
        PlayerCommand command;
        command.tick = *tick;
        if (keyword == "move") {
            const auto dx = parse_whole(args[1], -1, 1);
            const auto dy = parse_whole(args[2], -1, 1);
            if (!dx || !dy)
                return fail(why, "a direction is -1, 0 or 1");
            command.kind = PlayerCommand::Kind::move;
            command.dx = static_cast<int>(*dx);
            command.dy = static_cast<int>(*dy);
        } else {
            const auto x = parse_real(args[1]);
            const auto y = parse_real(args[2]);
            if (!x || !y || std::fabs(*x) > MAX_COORDINATE || std::fabs(*y) > MAX_COORDINATE)
                return fail(why, "a target is two pixel coordinates");
            command.kind = PlayerCommand::Kind::target;
            command.x = *x;
            command.y = *y;
        }
        record_.commands.push_back(command);
        return true;
    }

    bool read_result(const std::vector<std::string_view>& args, std::string& why) {
        if (args.size() != 7)
            return fail(why, "result needs an outcome and six numbers");
        TrialResult r;
        if (args[0] == "survived")
            r.outcome = TrialOutcome::survived;
        else if (args[0] == "perished")
            r.outcome = TrialOutcome::perished;
        else
            return fail(why, "the outcome is survived or perished");
        const auto time_left = parse_whole(args[1], 0, MAX_TICK);
        const auto monsters = parse_whole(args[2], 0, MAX_TICK);
        const auto food = parse_whole(args[3], 0, MAX_TICK);
        const auto humans = parse_whole(args[4], 0, MAX_TICK);
        const auto energy = parse_real(args[5]);
        const auto score = parse_real(args[6]);
        if (!time_left || !monsters || !food || !humans || !energy || !score)
            return fail(why, "result numbers are not valid");
        r.time_left = *time_left;
        r.num_monsters_remaining = *monsters;
        r.num_food_remaining = *food;
        r.num_humans_remaining = *humans;
        r.energy_remaining = *energy;
        r.trial_score = *score;
        record_.result = r;
        return true;
    }

    InputRecord record_;
    std::vector<std::string> fields_;
    std::size_t line_ = 0;
    Ticks last_tick_ = 0;
    bool ended_ = false;
    bool abandoned_ = false;
};

}  // namespace

std::string input_record_to_text(const InputRecord& record) {
    std::string out(MAGIC);
    out += "\nlevel " + record.level_path + "\nlevel_digest " + record.level_digest +
           "\nconfiguration_digest " + record.configuration_digest + "\nseed " +
           number(record.seed) + "\ntraits ";
    const PersonalityTraits& t = record.traits;
    out += number(t.openness) + "," + number(t.conscientiousness) + "," + number(t.extraversion) +
           "," + number(t.agreeableness) + "," + number(t.neuroticism) + "\n";
    for (const PlayerCommand& c : record.commands) {
        if (c.kind == PlayerCommand::Kind::move)
            out += "move " + std::to_string(c.tick) + " " + std::to_string(c.dx) + " " +
                   std::to_string(c.dy) + "\n";
        else
            out +=
                "target " + std::to_string(c.tick) + " " + number(c.x) + " " + number(c.y) + "\n";
    }
    if (const auto& r = record.result)
        out += std::string("result ") +
               (r->outcome == TrialOutcome::perished ? "perished" : "survived") + " " +
               std::to_string(r->time_left) + " " + std::to_string(r->num_monsters_remaining) +
               " " + std::to_string(r->num_food_remaining) + " " +
               std::to_string(r->num_humans_remaining) + " " + number(r->energy_remaining) + " " +
               number(r->trial_score) + "\n";
    else
        out += "abandoned " + std::to_string(record.abandoned_at) + "\n";
    return out + "end\n";
}

std::optional<InputRecord> input_record_parse(std::string_view text, std::string& why) {
    return RecordParser().parse(text, why);
}

std::string level_digest_of(std::string_view level_file_text) {
    Digest digest;
    digest.add(level_file_text);
    return digest.hex();
}

std::optional<std::string> configuration_digest_of(Files& files, const ConfigsState& configs,
                                                   std::string& why) {
    Digest digest;
    for (const std::string& path : configs.loaded_paths) {
        const FileText text = files.read(path, MAX_CONFIGURATION_FILE_BYTES);
        if (!text) {
            why = "\"" + path + "\" " + text.error;
            return std::nullopt;
        }
        digest.add(*text.text);
    }
    return digest.hex();
}

bool trial_results_equal(const TrialResult& a, const TrialResult& b) {
    return a.outcome == b.outcome && a.time_left == b.time_left &&
           a.num_monsters_remaining == b.num_monsters_remaining &&
           a.num_food_remaining == b.num_food_remaining &&
           a.num_humans_remaining == b.num_humans_remaining &&
           a.energy_remaining == b.energy_remaining && a.trial_score == b.trial_score;
}

}  // namespace veldra
