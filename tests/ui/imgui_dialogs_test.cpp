#include "ui/imgui_dialogs.h"

#include <gtest/gtest.h>

#include <fstream>

#include "config/localization.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "support/headless_imgui.h"
#include "support/scratch_directory.h"
#include "ui/dialog_host.h"
#include "ui/file_browser.h"

namespace veldra {
namespace {

namespace fs = std::filesystem;

struct Answer {
    int calls = 0;
    std::optional<std::string> text;
};

class ImGuiDialogsTest : public ::testing::Test {
protected:
    ImGuiDialogsTest() : installed(&install_window_dialogs(runtime)) {
        runtime.start(runtime.room_add({"room", nullptr}));
    }

    ImGuiDialogs& dialogs() { return *installed; }
    const DialogFrame& shown() { return dialogs().last_frame(); }
    static DialogAnswer to(Answer& answer) {
        return [&answer](std::optional<std::string> text) {
            ++answer.calls;
            answer.text = std::move(text);
        };
    }

    // The window's frame: input, the runtime's events (the host draws in them), presenting.
    void frames(int n = 1) {
        for (int i = 0; i < n; ++i) {
            imgui.new_frame();
            runtime.run_frame();
            imgui.end_frame();
        }
    }
    void press_key(ImGuiKey key) {
        imgui.key(key);
        frames(2);
    }
    // Clicks the item drawn under `label` in the last frame, as a user would, and lets one more
    // frame show what the click did.
    void click(std::string_view label, int times = 1) {
        const auto rect = shown().item(label);
        ASSERT_TRUE(rect) << "nothing drawn as \"" << label << "\"";
        const float x = rect->x + rect->w / 2;
        const float y = rect->y + rect->h / 2;
        for (int i = 0; i < times; ++i) {
            imgui.press(x, y);
            frames(1);
            imgui.release(x, y);
            frames(2);
        }
    }
    void double_click(std::string_view label) { click(label, 2); }
    // The list's entries as drawn, top to bottom.
    std::vector<std::string> entries_shown() {
        std::vector<std::string> labels;
        const FileBrowser* browser = dialogs().front_browser();
        if (!browser)
            return labels;
        for (const auto& entry : browser->listing().entries) {
            const std::string label = entry.is_folder ? entry.name + "/" : entry.name;
            if (shown().item(label))
                labels.push_back(label);
        }
        return labels;
    }

    Services services;
    Runtime runtime{services};
    test::HeadlessImGui imgui;
    ImGuiDialogs* installed;
};

TEST_F(ImGuiDialogsTest, TypedTextAndEnterAnswerInALaterFrameNeverInsideTheCall) {
    Answer answer;
    dialogs().get_string("[pin_center]Your name?\nAs on the form.", "Ann", to(answer));
    EXPECT_EQ(answer.calls, 0);
    frames(3);
    EXPECT_EQ(answer.calls, 0);
    EXPECT_TRUE(shown().shows("Your name?\nAs on the form."));
    EXPECT_FALSE(shown().shows("[pin_center]"));
    // The field has the keyboard with its text selected: typing would replace it, End keeps it.
    press_key(ImGuiKey_End);
    imgui.type("e B.");
    frames(1);
    press_key(ImGuiKey_Enter);
    EXPECT_EQ(answer.calls, 1);
    EXPECT_EQ(answer.text, "Anne B.");
    EXPECT_EQ(dialogs().waiting(), 0u);
    frames(2);
    EXPECT_EQ(answer.calls, 1);
    EXPECT_TRUE(shown().texts.empty());
}

TEST_F(ImGuiDialogsTest, DialogsSpeakTheActiveLanguageAndEnglishWhereItHasNoWord) {
    Language german;
    german.lines = {{"Dialog_Cancel", "Abbrechen"}, {"Dialog_Yes", "Ja"}};
    Localization localization;
    localization.active = german;
    dialogs().set_texts(dialog_texts_from(localization));
    Answer answer;
    dialogs().get_string("Name?", "", to(answer));
    frames(3);
    EXPECT_TRUE(shown().item("Abbrechen"));
    EXPECT_TRUE(shown().item("OK"));  // the language has none: English
    EXPECT_FALSE(shown().item("Cancel"));
}

TEST_F(ImGuiDialogsTest, EscapeAndCancelAnswerNothing) {
    Answer escaped;
    Answer cancelled;
    dialogs().get_string("First?", "x", to(escaped));
    dialogs().get_string("Second?", "y", to(cancelled));
    frames(3);
    press_key(ImGuiKey_Escape);
    EXPECT_EQ(escaped.calls, 1);
    EXPECT_FALSE(escaped.text);
    frames(2);
    ASSERT_TRUE(shown().shows("Second?"));
    click("Cancel");
    EXPECT_EQ(cancelled.calls, 1);
    EXPECT_FALSE(cancelled.text);
}

TEST_F(ImGuiDialogsTest, TheKeyPressedWhenTheGameAsksDoesNotAnswer) {
    Answer answer;
    imgui.key(ImGuiKey_Enter);
    imgui.new_frame();
    dialogs().get_string("Name?", "", to(answer));
    runtime.run_frame();
    imgui.end_frame();
    frames(3);
    EXPECT_EQ(answer.calls, 0);
    EXPECT_TRUE(shown().shows("Name?"));
}

class FileDialogTest : public ImGuiDialogsTest {
protected:
    FileDialogTest() {
        fs::create_directory(root() / "sub");
        for (const fs::path& file : {fs::path("sub/inner.json"), fs::path("b.json"),
                                     fs::path("a.json"), fs::path("c.txt")})
            std::ofstream(root() / file) << "{}";
    }
    const fs::path& root() const { return dir.path(); }
    fs::path folder() { return dialogs().front_browser()->folder(); }

    testing::ScratchDirectory dir{"file_dialog"};
};

TEST_F(FileDialogTest, ListsFoldersFirstThenFilteredFilesAndAllFilesOnRequest) {
    Answer answer;
    dialogs().get_open_filename("*.json", (root() / "nothing_here").string(), "Pick one",
                                to(answer));
    frames(3);
    EXPECT_TRUE(shown().shows("Pick one"));
    EXPECT_EQ(folder(), root());
    EXPECT_EQ(entries_shown(), (std::vector<std::string>{"sub/", "a.json", "b.json"}));
    EXPECT_LT(shown().item("sub/")->y, shown().item("a.json")->y);
    EXPECT_LT(shown().item("a.json")->y, shown().item("b.json")->y);
    click("Show all files");
    EXPECT_EQ(entries_shown(), (std::vector<std::string>{"sub/", "a.json", "b.json", "c.txt"}));
    EXPECT_EQ(answer.calls, 0);
}

TEST_F(FileDialogTest, DoubleClicksEnterAFolderGoUpAndPickAFile) {
    Answer answer;
    dialogs().get_open_filename("*.json", root().string(), "", to(answer));
    frames(3);
    double_click("sub/");
    EXPECT_EQ(folder(), root() / "sub");
    EXPECT_EQ(entries_shown(), std::vector<std::string>{"inner.json"});
    double_click("..");
    EXPECT_EQ(folder(), root());
    EXPECT_EQ(answer.calls, 0);
    double_click("b.json");
    EXPECT_EQ(answer.calls, 1);
    EXPECT_EQ(answer.text, (root() / "b.json").string());
}

TEST_F(FileDialogTest, AClickedFileIsPickedWithOk) {
    Answer answer;
    dialogs().get_open_filename("*.json", root().string(), "", to(answer));
    frames(3);
    click("a.json");
    EXPECT_EQ(answer.calls, 0);
    click("OK");
    EXPECT_EQ(answer.calls, 1);
    EXPECT_EQ(answer.text, (root() / "a.json").string());
}

TEST_F(FileDialogTest, AFolderThatCannotBeReadSaysWhyAndTheDialogStaysUsable) {
    Answer answer;
    dialogs().get_open_filename("*.json", root().string(), "", to(answer));
    frames(3);
    fs::remove_all(root() / "sub");  // gone between listing and double-click
    double_click("sub/");
    EXPECT_TRUE(shown().shows("Cannot read the folder"));
    EXPECT_TRUE(entries_shown().empty());
    double_click("..");
    EXPECT_FALSE(shown().shows("Cannot read the folder"));
    double_click("a.json");
    EXPECT_EQ(answer.text, (root() / "a.json").string());
}

TEST_F(FileDialogTest, SavingOverAnExistingFileAsksFirst) {
    std::ofstream(root() / "trials.csv") << "old";
    Answer answer;
    dialogs().get_save_filename("*.csv", (root() / "trials.csv").string(), "Save results as",
                                to(answer));
    frames(3);
    EXPECT_TRUE(shown().shows("Save results as"));
    click("OK");
    EXPECT_TRUE(shown().shows("\"trials.csv\" already exists. Replace it?"));
    click("No");
    EXPECT_FALSE(shown().shows("Replace it?"));
    EXPECT_EQ(answer.calls, 0);
    EXPECT_EQ(dialogs().waiting(), 1u);
    click("OK");
    click("Yes");
    EXPECT_EQ(answer.calls, 1);
    EXPECT_EQ(answer.text, (root() / "trials.csv").string());
}

TEST_F(FileDialogTest, SavingUnderAFolderNameIsRefusedInTheDialog) {
    Answer answer;
    dialogs().get_save_filename("*.csv", (root() / "x").string(), "", to(answer));
    frames(3);
    press_key(ImGuiKey_Backspace);  // the name field has the keyboard: "x" goes
    imgui.type("sub");
    frames(1);
    press_key(ImGuiKey_Enter);
    EXPECT_TRUE(shown().shows("\"sub\" is a folder"));
    EXPECT_EQ(folder(), root());
    EXPECT_EQ(answer.calls, 0);
    // The keyboard is back in the name: a typed fix and Enter save without a click.
    frames(1);
    imgui.type("/new.csv");
    frames(1);
    press_key(ImGuiKey_Enter);
    EXPECT_EQ(answer.calls, 1);
    EXPECT_EQ(answer.text, (root() / "sub" / "new.csv").string());
}

TEST_F(FileDialogTest, ANameInAFolderThatIsNotThereIsRefusedAndCanBeFixedByTyping) {
    Answer answer;
    dialogs().get_save_filename("*.csv", (root() / "x.csv").string(), "", to(answer));
    frames(3);
    imgui.type("missing/y.csv");
    frames(1);
    press_key(ImGuiKey_Enter);
    EXPECT_TRUE(shown().shows("There is no folder"));
    EXPECT_EQ(answer.calls, 0);
    frames(1);
    for (int i = 0; i < 13; ++i)
        press_key(ImGuiKey_Backspace);
    imgui.type("y.csv");
    frames(1);
    press_key(ImGuiKey_Enter);
    EXPECT_EQ(answer.calls, 1);
    EXPECT_EQ(answer.text, (root() / "y.csv").string());
}

TEST_F(ImGuiDialogsTest, MessagesAreLoggedAndShownOneAfterAnotherBeforeLaterQuestions) {
    LogCapture log;
    Answer answer;
    dialogs().show_message("First [red]news[/c]");
    dialogs().show_message("Second news");
    dialogs().get_string("Then a question", "", to(answer));
    EXPECT_TRUE(log.contains("First [red]news[/c]"));
    EXPECT_TRUE(log.contains("Second news"));
    frames(2);
    EXPECT_TRUE(shown().shows("First news"));
    EXPECT_FALSE(shown().shows("Second news"));
    click("OK");
    EXPECT_TRUE(shown().shows("Second news"));
    EXPECT_FALSE(shown().shows("First news"));
    press_key(ImGuiKey_Enter);
    frames(1);
    EXPECT_TRUE(shown().shows("Then a question"));
    EXPECT_EQ(answer.calls, 0);
}

TEST_F(ImGuiDialogsTest, TheHostKeepsDrawingAfterARoomChangeAndWaitsWhileNoFrameIsOpen) {
    Answer answer;
    dialogs().get_string("Still there?", "yes", to(answer));
    runtime.run_frame();  // no Dear ImGui frame: nothing to draw into, nothing answered
    EXPECT_TRUE(shown().texts.empty());
    runtime.room_goto(runtime.room_add({"next", nullptr}));
    frames(3);
    EXPECT_EQ(runtime.instance_number<obj_dialog_host>(), 1u);
    EXPECT_TRUE(shown().shows("Still there?"));
    press_key(ImGuiKey_Enter);
    EXPECT_EQ(answer.text, "yes");
}

}  // namespace
}  // namespace veldra
