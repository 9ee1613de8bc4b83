#pragma once
// The developer terminal: every log line with its colour markup, filtered by level, and a
// command line below that runs the commands of debug_commands.h. It shows while the tools are
// on and the debug setting show_log is, over a played trial; it keeps lines from its creation
// on, shown or not. Enter runs the line, Up and Down walk the lines entered before, Tab
// completes a command name and, when several fit, prints them.

#include <string>
#include <utility>
#include <vector>

#include "devtools/command_line.h"
#include "devtools/terminal_log.h"
#include "ui/overlay.h"

namespace veldra {

class TerminalTap;

inline constexpr const char* TERMINAL_HEADING = "Terminal";

class obj_debug_terminal : public obj_overlay {
    VELDRA_OBJECT(obj_debug_terminal, obj_overlay)
public:
    obj_debug_terminal() { persistent = true; }
    // Installs the terminal that keeps the lines, and at clean-up puts the old one back.
    void on_create() override;
    void on_clean_up() override;
    void on_draw_gui_end() override;

    OverlayLayer overlay_layer() const override { return OverlayLayer::panel; }
    bool showing() const override;
    const ControlRecord& controls() const override { return controls_; }

    TerminalLog& log();
    // What Enter does with the command line: echoes it, remembers it and prints what the
    // command answers.
    void enter(const std::string& line);
    // What Tab makes of the command line `line`; prints the candidates when several fit.
    std::string completed(const std::string& line);
    // What Up and Down make of it.
    std::string history_older(const std::string& line);
    std::string history_newer(const std::string& line);

    // The shown rows laid out in the last frame, [first, end) among those the filter lets
    // through: only the rows in view are.
    std::pair<std::size_t, std::size_t> drawn_rows() const { return drawn_rows_; }

    std::string input;  // the command line
    CommandHistory history;

private:
    void draw_filter();
    void draw_lines();
    void draw_command_line();

    TerminalTap* tap_ = nullptr;
    ControlRecord controls_;
    std::size_t lines_seen_ = 0;                   // TerminalLog::added at the last frame drawn
    std::vector<const TerminalLine*> shown_rows_;  // the filter's rows, rebuilt each frame
    std::pair<std::size_t, std::size_t> drawn_rows_;
    bool focus_input_ = false;
    bool was_showing_ = false;
};

}  // namespace veldra
