#include "ui/ui_script_commands.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

TEST(UiScript, ReadsEveryCommandAndSkipsCommentsAndBlankLines) {
    std::string error;
    const auto commands = parse_ui_script(
        "# a session\n\nwait Level 1/2 done\r\nclick Start session (local)\n  key enter\n"
        "hold d 30\ntype C:\\data\\trials.csv\nframes 12\nscreenshot a b.png\nquit\n"
        "wait_file server stopped\nkey ctrl+d\n",
        error);
    ASSERT_TRUE(commands) << error;
    ASSERT_EQ(commands->size(), 10u);
    using Kind = UiCommand::Kind;
    EXPECT_EQ((*commands)[0].kind, Kind::wait);
    EXPECT_EQ((*commands)[0].text, "Level 1/2 done");
    EXPECT_EQ((*commands)[0].line, 3);
    EXPECT_EQ((*commands)[1].text, "Start session (local)");
    EXPECT_EQ((*commands)[2].kind, Kind::key);
    EXPECT_EQ((*commands)[2].key, Key::enter);
    EXPECT_EQ((*commands)[3].kind, Kind::hold);
    EXPECT_EQ((*commands)[3].key, Key::d);
    EXPECT_EQ((*commands)[3].count, 30);
    EXPECT_EQ((*commands)[4].text, "C:\\data\\trials.csv");
    EXPECT_EQ((*commands)[5].count, 12);
    EXPECT_EQ((*commands)[6].kind, Kind::screenshot);
    EXPECT_EQ((*commands)[6].text, "a b.png");
    EXPECT_EQ((*commands)[7].kind, Kind::quit);
    EXPECT_EQ((*commands)[8].kind, Kind::wait_file);
    EXPECT_EQ((*commands)[8].text, "server stopped");
    EXPECT_FALSE((*commands)[2].with_ctrl);
    EXPECT_EQ((*commands)[9].key, Key::d);
    EXPECT_TRUE((*commands)[9].with_ctrl);
}

TEST(UiScript, SlidesTakeAValueAndTheSlidersLabelBoxesTheLabel) {
    std::string error;
    const auto commands = parse_ui_script("slide -0.25 Openness\nbox Level of detail\n", error);
    ASSERT_TRUE(commands) << error;
    using Kind = UiCommand::Kind;
    EXPECT_EQ((*commands)[0].kind, Kind::slide);
    EXPECT_DOUBLE_EQ((*commands)[0].value, -0.25);
    EXPECT_EQ((*commands)[0].text, "Openness");
    EXPECT_EQ((*commands)[1].kind, Kind::box);
    EXPECT_EQ((*commands)[1].text, "Level of detail");
}

// Editors on some systems save UTF-8 with a byte order mark in front of the first command.
TEST(UiScript, ALeadingByteOrderMarkIsNoPartOfTheFirstCommand) {
    std::string error;
    const auto commands = parse_ui_script("\xEF\xBB\xBFwait Level 1\r\nquit\r\n", error);
    ASSERT_TRUE(commands) << error;
    ASSERT_EQ(commands->size(), 2u);
    EXPECT_EQ((*commands)[0].kind, UiCommand::Kind::wait);
    EXPECT_EQ((*commands)[0].source, "wait Level 1");
}

TEST(UiScript, NamesTheLineOfTheFirstMistake) {
    const std::pair<const char*, const char*> cases[] = {
        {"frames 2\njump high\n", "line 2: unknown command \"jump\""},
        {"click\n", "line 1: \"click\" needs a text after it"},
        {"wait_file\n", "line 1: \"wait_file\" needs a text after it"},
        {"key q\n", "line 1: \"q\" is not a key this game knows"},
        {"key ctrl+\n", "line 1: \"ctrl+\" is not a key this game knows"},
        {"hold ctrl+d 3\n", "line 1: \"ctrl+d\" is not a key this game knows"},
        {"hold d\n", "line 1: \"hold\" needs a key and a number of frames"},
        {"slide Openness\n", "line 1: \"slide\" needs a number and the label of a slider"},
        {"slide 0.5\n", "line 1: \"slide\" needs a number and the label of a slider"},
        {"slide nan Openness\n", "line 1: \"slide\" needs a number and the label of a slider"},
        {"box\n", "line 1: \"box\" needs a text after it"},
        {"frames\n", "line 1: \"frames\" needs a whole number"},
        {"frames -3\n", "line 1: \"frames\" -3 is not a whole number"},
        {"frames 1e9\n", "line 1: \"frames\" 1e9 is not a whole number"},
        {"frames 99999999999999999999\n",
         "line 1: \"frames\" 99999999999999999999 is too large: at most 9223372036854775807"},
        {"hold d 9223372036854775808\n",
         "line 1: \"hold\" 9223372036854775808 is too large: at most 9223372036854775807"},
        // A byte order mark elsewhere than at the start is no part of a command.
        {"frames 1\n\xEF\xBB\xBFwait x\n", "line 2: unknown command \"\xEF\xBB\xBFwait\""},
        {"\x7f"
         "ELF\x02\x01\n",
         "line 1: this is no UI script: it holds bytes that are not text"},
    };
    for (const auto& [text, message] : cases) {
        std::string error;
        EXPECT_FALSE(parse_ui_script(text, error)) << text;
        EXPECT_EQ(error, message) << text;
    }
}

}  // namespace
}  // namespace veldra
