#include "async/dialog_promises.h"

#include <gtest/gtest.h>

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "runtime/gc.h"

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

TEST_F(DialogPromisesTest, ScriptedAnswersComeAtTheEndOfTheNextFrameAndACancelIsUndefined) {
    ScriptedDialogs dialogs;
    dialogs.echo_messages_to_stderr = false;
    dialogs.answers = {"levels.json", std::nullopt};
    std::vector<std::string> order;
    Promise answered = dialog_get_open_filename(dialogs, "*.json", "").and_then([&] {
        order.push_back("answered");
        // A question asked from an answer waits for a frame of its own.
        return dialog_get_string(dialogs, "Name?", "").and_then([&] { order.push_back("named"); });
    });
    Promise cancelled = dialog_get_save_filename(dialogs, "*.csv", "", "Save results");
    order.push_back("asked");
    dialogs.end_frame();  // the frame that asked: nothing is answered inside it
    EXPECT_TRUE(answered.is_pending());
    EXPECT_TRUE(cancelled.is_pending());
    dialogs.end_frame();
    ASSERT_TRUE(cancelled.is_fulfilled());
    EXPECT_TRUE(cancelled.value().is_undefined());
    EXPECT_EQ(order, (std::vector<std::string>{"asked", "answered"}));
    EXPECT_EQ(dialogs.waiting(), 1u);
    // The script is used up, so the question asked from the answer is cancelled, a frame later.
    dialogs.end_frame();
    EXPECT_TRUE(answered.is_fulfilled());
    EXPECT_EQ(order, (std::vector<std::string>{"asked", "answered", "named"}));
    EXPECT_EQ(dialogs.questions_asked,
              (std::deque<std::string>{"*.json", "Save results", "Name?"}));
}

TEST_F(DialogPromisesTest, AnOpenDialogKeepsTheChainWaitingUntilTheUserAnswers) {
    PendingDialogs dialogs;
    std::string seen;
    Promise chain = dialog_get_string(dialogs, "Language?", "en").and_then([&](const Value& v) {
        seen = v.as_string();
    });
    EXPECT_TRUE(chain.is_pending());
    ASSERT_TRUE(dialogs.pending);
    dialogs.pending("de");
    EXPECT_TRUE(chain.is_fulfilled());
    EXPECT_EQ(seen, "de");
}

}  // namespace
}  // namespace veldra
