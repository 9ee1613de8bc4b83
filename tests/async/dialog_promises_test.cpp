#include "async/dialog_promises.h"

#include <gtest/gtest.h>

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "runtime/gc.h"
#include "support/scripted_answers.h"

namespace veldra {
namespace {

// A window's dialog: it answers only when the user does, frames later.
class PendingDialogs final : public Dialogs {
public:
    void get_string(std::string_view, std::string_view, DialogAnswer answer) override {
        pending = std::move(answer);
    }
    void get_open_filename(std::string_view, std::string_view, std::string_view,
                           DialogAnswer answer) override {
        pending = std::move(answer);
    }
    void get_save_filename(std::string_view, std::string_view, std::string_view,
                           DialogAnswer answer) override {
        pending = std::move(answer);
    }
    void show_message(std::string_view) override {}
    DialogAnswer pending;
};

class DialogPromisesTest : public ::testing::Test {
protected:
    GcScope collector;
};

TEST_F(DialogPromisesTest, ScriptedAnswersComeAtTheEndOfTheNextFrameAndACancelIsACancellation) {
    ScriptedDialogs dialogs;
    dialogs.echo_messages_to_stderr = false;
    dialogs.answers = {"levels.json", std::nullopt, "Ann"};
    std::vector<std::string> order;
    Promise<std::string> named =
        dialog_get_open_filename(dialogs, "*.json", "").and_then([&](const std::string& file) {
            order.push_back("answered " + file);
            // A question asked from an answer waits for a frame of its own.
            return dialog_get_string(dialogs, "Name?", "");
        });
    Promise<std::string> cancelled = dialog_get_save_filename(dialogs, "*.csv", "", "Save results");
    order.push_back("asked");
    dialogs.end_frame();  // the frame that asked: nothing is answered inside it
    EXPECT_TRUE(named.is_pending());
    EXPECT_TRUE(cancelled.is_pending());
    dialogs.end_frame();
    EXPECT_TRUE(cancelled.is_cancelled());
    EXPECT_EQ(order, (std::vector<std::string>{"asked", "answered levels.json"}));
    EXPECT_EQ(dialogs.waiting(), 1u);
    dialogs.end_frame();
    ASSERT_TRUE(named.is_fulfilled());
    EXPECT_EQ(named.value(), "Ann");
    // With the script used up, a further question is cancelled, a frame later too.
    Promise<std::string> unscripted = dialog_get_string(dialogs, "Age?", "");
    EXPECT_TRUE(unscripted.is_pending());
    testing::let_scripted_dialogs_answer(dialogs);
    EXPECT_TRUE(unscripted.is_cancelled());
    EXPECT_EQ(dialogs.questions_asked,
              (std::deque<std::string>{"*.json", "Save results", "Name?", "Age?"}));
}

TEST_F(DialogPromisesTest, AnOpenDialogKeepsTheChainWaitingUntilTheUserAnswers) {
    PendingDialogs dialogs;
    std::string seen;
    Promise<void> chain =
        dialog_get_string(dialogs, "Language?", "en").and_then([&](const std::string& v) {
            seen = v;
        });
    EXPECT_TRUE(chain.is_pending());
    ASSERT_TRUE(dialogs.pending);
    dialogs.pending("de");
    EXPECT_TRUE(chain.is_fulfilled());
    EXPECT_EQ(seen, "de");
}

}  // namespace
}  // namespace veldra
