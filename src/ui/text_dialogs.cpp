// The dialogs of one text: a question with a text field, and a message.

#include <imgui.h>
#include <imgui_stdlib.h>

#include "ui/dialog_window.h"

namespace veldra {

namespace {

constexpr float TEXT_DIALOG_WIDTH = 680;

class TextDialog final : public DialogWindow {
public:
    TextDialog(std::string prompt, std::string initial, const DialogTexts& texts)
        : prompt_(std::move(prompt)), text_(std::move(initial)), texts_(texts) {}

    std::optional<DialogOutcome> draw(DialogFrame& frame) override {
        begin_dialog_window(frame, TEXT_DIALOG_WIDTH, 0);
        dialog_text(frame, prompt_);
        ImGui::SetNextItemWidth(-FLT_MIN);
        if (!focus_requested_) {
            ImGui::SetKeyboardFocusHere();
            focus_requested_ = true;
        }
        const bool entered =
            ImGui::InputText("##answer", &text_, ImGuiInputTextFlags_EnterReturnsTrue);
        remember_item(frame, "answer");
        const int button = dialog_buttons(frame, {texts_.ok, texts_.cancel});
        end_dialog_window();
        if (button == 1 || frame.keys().cancel())
            return DialogOutcome{};
        if (button == 0 || (frame.keys_live && entered) || frame.keys().confirm())
            return DialogOutcome{text_};
        return std::nullopt;
    }

private:
    std::string prompt_;
    std::string text_;
    DialogTexts texts_;
    bool focus_requested_ = false;
};

class MessageDialog final : public DialogWindow {
public:
    MessageDialog(std::string text, const DialogTexts& texts)
        : text_(std::move(text)), texts_(texts) {}

    std::optional<DialogOutcome> draw(DialogFrame& frame) override {
        begin_dialog_window(frame, TEXT_DIALOG_WIDTH, 0);
        dialog_text(frame, text_);
        const bool ok = dialog_buttons(frame, {texts_.ok}) == 0;
        end_dialog_window();
        if (ok || frame.keys().confirm() || frame.keys().cancel() ||
            frame.keys().pressed(ImGuiKey_Space))
            return DialogOutcome{};
        return std::nullopt;
    }

private:
    std::string text_;
    DialogTexts texts_;
};

}  // namespace

std::unique_ptr<DialogWindow> make_text_dialog(std::string prompt, std::string initial,
                                               const DialogTexts& texts) {
    return std::make_unique<TextDialog>(std::move(prompt), std::move(initial), texts);
}

std::unique_ptr<DialogWindow> make_message_dialog(std::string text, const DialogTexts& texts) {
    return std::make_unique<MessageDialog>(std::move(text), texts);
}

}  // namespace veldra
