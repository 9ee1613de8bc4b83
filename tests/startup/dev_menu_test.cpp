#include "startup/dev_menu.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "config/game_configurations.h"
#include "runtime/dialogs.h"
#include "runtime/frame_loop.h"
#include "runtime/gc.h"
#include "startup/app_state.h"
#include "startup/server_connection.h"
#include "support/menu_labels.h"
#include "support/scoped_environment.h"
#include "support/scripted_answers.h"

namespace veldra {
namespace {

using Labels = std::vector<std::string>;

using testing::labels_of;

const MenuDefinition& page_of(const MenuDefinition& menu, const std::string& label) {
    for (const MenuEntry& entry : menu.entries)
        if (entry.label == label && entry.page)
            return *entry.page;
    throw std::runtime_error("no page " + label);
}

class DevMenuTest : public ::testing::Test {
protected:
    // First, so that it is set before the members below are made and put back after.
    testing::ScopedEnvironment data_folder = testing::data_folder_is_source_tree();

    void SetUp() override {
        ASSERT_TRUE(reload_game_configurations(app.sim.configs, *app.services.files, ""));
        dialogs().echo_messages_to_stderr = false;
    }
    ScriptedDialogs& dialogs() { return static_cast<ScriptedDialogs&>(*app.services.dialogs); }

    GcScope collector;
    AppState app{{"veldra"}};
};

TEST_F(DevMenuTest, OffersEveryEntryInItsOrderAndSaysWhenNoServerIsThere) {
    const Labels offline = {"DEVELOPER MENU",
                            "Start session (server)",
                            "[pin_center][slant](not connected to a server)",
                            "Start session (local)",
                            "Generate levels",
                            "Auto-run",
                            "Play one level from the list",
                            "Play one level from a file repeatedly"};
    EXPECT_EQ(labels_of(make_dev_menu(app, false)), offline);
    Labels online = offline;
    online.erase(online.begin() + 2);
    EXPECT_EQ(labels_of(make_dev_menu(app, true)), online);

    const MenuDefinition menu = make_dev_menu(app, false);
    EXPECT_EQ(labels_of(page_of(menu, "Start session (server)")),
              (Labels{"START SESSION (SERVER)",
                      "[pin_center]You're about to start a session of one or more trials. The "
                      "results of the trials will be submitted to the server.",
                      "User ID", "[pin_center]Continue?", "Continue"}));
    EXPECT_EQ(labels_of(page_of(menu, "Start session (local)")),
              (Labels{"START SESSION (LOCAL)",
                      "[pin_center]You're about to start a session of one or more trials. At "
                      "the end of the session, you will get to save the trial results as a "
                      "CSV-file on your computer.",
                      "[pin_center]Continue?", "Continue"}));
    // One entry per level of the configuration, after the heading.
    const Labels levels = labels_of(page_of(menu, "Play one level from the list"));
    ASSERT_EQ(levels.size(), app.sim.configs->levels.size() + 1);
    EXPECT_EQ(levels[0], "Select level");
    EXPECT_EQ(levels[1], app.sim.configs->levels.at(0).as_string());
}

TEST_F(DevMenuTest, AServerSessionNeedsAUserIdAndAServer) {
    const MenuDefinition menu = make_dev_menu(app, false);
    const MenuDefinition& page = page_of(menu, "Start session (server)");
    page.entries.back().action();
    ASSERT_EQ(dialogs().messages_shown.size(), 1u);
    EXPECT_EQ(dialogs().messages_shown[0], "Enter a user ID first.");
    page.entries[2].field->text = "P17";
    page.entries.back().action();
    EXPECT_EQ(dialogs().messages_shown.back(), no_server_configured_text());
    EXPECT_NE(dialogs().messages_shown.back().find("\".api_env.json\""), std::string::npos);
}

// A configured server that cannot be reached: the user check fails, said in the participant's
// words, and no session starts.
TEST_F(DevMenuTest, AServerThatDoesNotAnswerStartsNoSession) {
    app.api_env.remote_url = "http://127.0.0.1:9/";
    app.runtime.start(app.runtime.room_add({"room", nullptr}));
    const MenuDefinition menu = make_dev_menu(app, true);
    const MenuDefinition& page = page_of(menu, "Start session (server)");
    page.entries[2].field->text = "P17";
    page.entries.back().action();
    for (int frame = 0; frame < 3; ++frame)
        run_program_frame(app.runtime, app.services);
    ASSERT_FALSE(dialogs().messages_shown.empty());
    EXPECT_EQ(dialogs().messages_shown.back(), "Failed to get data from the server.");
    EXPECT_FALSE(app.server_session);
}

TEST_F(DevMenuTest, CancelledQuestionsStartNothing) {
    const MenuDefinition menu = make_dev_menu(app, false);
    for (const MenuEntry& entry : menu.entries)
        if (entry.kind == MenuEntryKind::function)
            entry.action();  // every question is cancelled: no answers are scripted
    testing::answer_every_scripted_question(dialogs());
    EXPECT_EQ(dialogs().questions_asked, (std::deque<std::string>{"*.json", "*.json", "*.txt"}));
    EXPECT_TRUE(dialogs().messages_shown.empty());
    EXPECT_FALSE(app.local_session);
}

// A question left unanswered ends the auto run quietly, even after an answer that was refused
// with a message; a run that cannot start says so once every question is answered.
TEST_F(DevMenuTest, AnAutoRunLeftAtAnyQuestionSaysNothingAndOneThatCannotStartSaysSo) {
    const MenuDefinition menu = make_dev_menu(app, false);
    const MenuEntry* auto_run = nullptr;
    for (const MenuEntry& entry : menu.entries)
        if (entry.label == "Auto-run")
            auto_run = &entry;
    ASSERT_TRUE(auto_run);
    auto answer_every_question = [&] { testing::answer_every_scripted_question(dialogs()); };

    dialogs().answers = {"runs.json", "12", std::nullopt};
    auto_run->action();
    answer_every_question();
    EXPECT_EQ(dialogs().questions_asked.size(), 3u);
    EXPECT_TRUE(dialogs().messages_shown.empty());

    dialogs().answers = {"runs.json", "not a seed"};
    auto_run->action();
    answer_every_question();
    EXPECT_EQ(dialogs().questions_asked.size(), 5u);
    ASSERT_EQ(dialogs().messages_shown.size(), 1u);
    EXPECT_EQ(dialogs().messages_shown[0].rfind("\"not a seed\"", 0), 0u);

    dialogs().answers = {"missing-runs.json", "12", "out.csv"};
    auto_run->action();
    answer_every_question();
    ASSERT_EQ(dialogs().messages_shown.size(), 2u);
    EXPECT_EQ(dialogs().messages_shown[1], "Failed to read auto-run configurations.");
}

}  // namespace
}  // namespace veldra
