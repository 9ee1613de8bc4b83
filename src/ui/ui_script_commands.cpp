#include "ui/ui_script_commands.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <sstream>

#include "util/text.h"

namespace veldra {

namespace {

std::optional<Key> key_named(std::string_view name) {
    static const std::pair<std::string_view, Key> names[] = {{"up", Key::up},
                                                             {"down", Key::down},
                                                             {"left", Key::left},
                                                             {"right", Key::right},
                                                             {"w", Key::w},
                                                             {"a", Key::a},
                                                             {"s", Key::s},
                                                             {"d", Key::d},
                                                             {"space", Key::space},
                                                             {"enter", Key::enter},
                                                             {"escape", Key::escape},
                                                             {"tab", Key::tab},
                                                             {"backspace", Key::backspace},
                                                             {"f11", Key::f11},
                                                             {"f12", Key::f12},
                                                             {"plus", Key::plus},
                                                             {"minus", Key::minus},
                                                             {"p", Key::p},
                                                             {"ctrl", Key::ctrl}};
    for (const auto& [key_name, key] : names)
        if (key_name == name)
            return key;
    return std::nullopt;
}

constexpr auto MAX_COUNT = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());

// A count of frames; `problem` says why the text is none ("is too large: at most ...").
std::optional<std::int64_t> count_of(std::string_view text, std::string& problem) {
    problem = whole_number_problem(text, 0, MAX_COUNT);
    if (!problem.empty())
        return std::nullopt;
    return static_cast<std::int64_t>(*try_string_to_whole_number(text, 0, MAX_COUNT));
}

std::optional<double> number_of(std::string_view text) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

}  // namespace

std::optional<std::vector<UiCommand>> parse_ui_script(const std::string& text, std::string& error) {
    std::vector<UiCommand> commands;
    std::istringstream lines{std::string(string_without_utf8_bom(text))};
    std::string line;
    int number = 0;
    while (std::getline(lines, line)) {
        ++number;
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        const std::size_t start = line.find_first_not_of(" \t");
        if (start == std::string::npos || line[start] == '#')
            continue;
        const std::size_t space = line.find(' ', start);
        const std::string word =
            line.substr(start, space == std::string::npos ? space : space - start);
        const std::string rest = space == std::string::npos ? "" : line.substr(space + 1);
        UiCommand command;
        command.line = number;
        command.source = line.substr(start);
        auto bad = [&](const std::string& why) {
            error = "line " + std::to_string(number) + ": " + why;
            return std::nullopt;
        };
        if (word == "wait" || word == "wait_file" || word == "click" || word == "type" ||
            word == "screenshot" || word == "box") {
            if (rest.empty())
                return bad("\"" + word + "\" needs a text after it");
            command.kind = word == "wait"         ? UiCommand::Kind::wait
                           : word == "wait_file"  ? UiCommand::Kind::wait_file
                           : word == "click"      ? UiCommand::Kind::click
                           : word == "screenshot" ? UiCommand::Kind::screenshot
                           : word == "box"        ? UiCommand::Kind::box
                                                  : UiCommand::Kind::type;
            command.text = rest;
        } else if (word == "slide") {
            const std::size_t gap = rest.find(' ');
            const auto value = number_of(rest.substr(0, gap));
            if (!value || gap == std::string::npos || gap + 1 >= rest.size())
                return bad("\"slide\" needs a number and the label of a slider");
            command.kind = UiCommand::Kind::slide;
            command.value = *value;
            command.text = rest.substr(gap + 1);
        } else if (word == "key" || word == "hold") {
            std::istringstream args(rest);
            std::string name, frames;
            args >> name >> frames;
            // "ctrl+d": the key pressed while Control is held, as a hand plays a shortcut.
            constexpr std::string_view CTRL_PREFIX = "ctrl+";
            if (word == "key" && name.size() > CTRL_PREFIX.size() &&
                name.starts_with(CTRL_PREFIX)) {
                command.with_ctrl = true;
                name.erase(0, CTRL_PREFIX.size());
            }
            const auto key = key_named(name);
            if (!key)
                return bad("\"" + name + "\" is not a key this game knows");
            command.kind = word == "key" ? UiCommand::Kind::key : UiCommand::Kind::hold;
            command.key = *key;
            if (word == "hold") {
                std::string problem;
                const auto count = count_of(frames, problem);
                if (frames.empty())
                    return bad("\"hold\" needs a key and a number of frames");
                if (!count)
                    return bad("\"hold\" " + frames + " " + problem);
                command.count = *count;
            }
        } else if (word == "frames") {
            std::string problem;
            const auto count = count_of(rest, problem);
            if (rest.empty())
                return bad("\"frames\" needs a whole number");
            if (!count)
                return bad("\"frames\" " + rest + " " + problem);
            command.kind = UiCommand::Kind::frames;
            command.count = *count;
        } else if (word == "quit") {
            command.kind = UiCommand::Kind::quit;
        } else if (std::any_of(word.begin(), word.end(), [](char c) {
                       return static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
                   })) {
            return bad("this is no UI script: it holds bytes that are not text");
        } else {
            return bad("unknown command \"" + word + "\"");
        }
        commands.push_back(std::move(command));
    }
    return commands;
}

}  // namespace veldra
