#include "async/dialog_promises.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

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

TEST_F(DialogPromisesTest, ScriptedAnswersSettleAtOnceAndACancelIsACancellation) {
    ScriptedDialogs dialogs;
    dialogs.echo_messages_to_stderr = false;
    dialogs.answers = {"levels.json", std::nullopt};
    Promise<std::string> answered = dialog_get_open_filename(dialogs, "*.json", "");
    ASSERT_TRUE(answered.is_fulfilled());
    EXPECT_EQ(answered.value(), "levels.json");
    Promise<std::string> cancelled = dialog_get_save_filename(dialogs, "*.csv", "", "Save results");
    EXPECT_TRUE(cancelled.is_cancelled());
    // With the script used up, every further question is cancelled.
    EXPECT_TRUE(dialog_get_string(dialogs, "Name?", "").is_cancelled());
    EXPECT_EQ(dialogs.questions_asked.back(), "Name?");
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
