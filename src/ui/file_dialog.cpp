// The in-game file browser: open and save dialogs drawn over a FileBrowser.
//
// Mouse: a click selects, a double-click enters a folder or takes a file, ".." goes up.
// Keyboard: Up and Down move through the list, Enter enters the selected folder or takes the
// file (saving: the typed name), Backspace goes up, Escape cancels. The path field takes a
// typed or pasted path when Enter or Go is pressed. Where there are several drives (Windows), a
// row of buttons above it changes to another.

#include <imgui.h>
#include <imgui_stdlib.h>

#include <algorithm>
#include <string>
#include <vector>

#include "runtime/drives.h"
#include "runtime/utf8_path.h"
#include "ui/dialog_window.h"

namespace veldra {

namespace {

constexpr float FILE_DIALOG_WIDTH = 980;
constexpr float FILE_DIALOG_HEIGHT = 700;
const ImVec4 FOLDER_TEXT{0.98f, 0.84f, 0.45f, 1};

// What the user did with the list this frame, applied after it is drawn (entering a folder
// replaces the entries being drawn).
struct ListAction {
    bool up = false;
    std::optional<std::size_t> select;
    std::optional<std::size_t> open;
};

class FileDialog final : public DialogWindow {
public:
    FileDialog(FileBrowserMode mode, std::string_view filter, std::string_view initial,
               std::string title, const DialogTexts& texts)
        : browser_(mode, filter, initial, texts), heading_(std::move(title)), texts_(texts) {
        if (heading_.empty())
            heading_ = mode == FileBrowserMode::open ? texts_.open_title : texts_.save_title;
        scroll_to_selected_ = browser_.selected().has_value();
    }

    const FileBrowser* browser() const override { return &browser_; }

    std::optional<DialogOutcome> draw(DialogFrame& frame) override {
        begin_dialog_window(frame, FILE_DIALOG_WIDTH, FILE_DIALOG_HEIGHT);
        dialog_text(frame, heading_);
        const bool asking = browser_.replace_question().has_value();
        bool enter_taken = false;
        ImGui::BeginDisabled(asking);
        draw_drive_row(frame);
        enter_taken |= draw_path_row(frame);
        draw_filter_row(frame);
        if (!browser_.notice().empty())
            dialog_warning(frame, browser_.notice());
        const ListAction action = draw_list(frame);
        if (browser_.mode() == FileBrowserMode::save)
            enter_taken |= draw_name_row(frame);
        ImGui::EndDisabled();
        const bool cancelled = asking ? draw_replace_question(frame) : draw_buttons(frame);
        end_dialog_window();
        keep_keyboard_in_name_after_refusals();

        if (cancelled)
            return DialogOutcome{};
        if (!asking && !enter_taken)
            act(frame, action);
        if (browser_.chosen())
            return DialogOutcome{browser_.chosen()};
        return std::nullopt;
    }

private:
    // Windows: one button per drive, the current one greyed out. One drive (or "/") needs none.
    void draw_drive_row(DialogFrame& frame) {
        if (drives_.size() < 2)
            return;
        ImGui::AlignTextToFramePadding();
        dialog_text(frame, texts_.drive);
        const std::filesystem::path current = browser_.folder().root_path();
        for (const std::string& drive : drives_) {
            ImGui::SameLine();
            const std::filesystem::path root = utf8_path(drive);
            ImGui::BeginDisabled(root == current);
            if (ImGui::Button(drive.c_str()))
                browser_.enter(root);
            ImGui::EndDisabled();
            remember_item(frame, drive);
        }
    }

    // True when Enter went to the field.
    bool draw_path_row(DialogFrame& frame) {
        if (browser_.folder() != shown_folder_) {
            shown_folder_ = browser_.folder();
            path_text_ = path_utf8(shown_folder_);
        }
        ImGui::AlignTextToFramePadding();
        dialog_text(frame, texts_.folder);
        ImGui::SameLine();
        const float go_width =
            ImGui::CalcTextSize(texts_.go.c_str()).x + 4 * ImGui::GetStyle().FramePadding.x;
        ImGui::SetNextItemWidth(ImGui::GetContentRegionAvail().x - go_width -
                                ImGui::GetStyle().ItemSpacing.x);
        const bool entered =
            ImGui::InputText("##path", &path_text_, ImGuiInputTextFlags_EnterReturnsTrue);
        remember_item(frame, "path");
        ImGui::SameLine();
        const bool go = ImGui::Button(texts_.go.c_str(), ImVec2(go_width, 0));
        remember_item(frame, texts_.go);
        if (entered || go) {
            browser_.go_to(path_text_);
            shown_folder_.clear();  // show where it went, or the folder again after a mistake
        }
        return entered;
    }

    void draw_filter_row(DialogFrame& frame) {
        ImGui::AlignTextToFramePadding();
        dialog_text(frame, dialog_text_with(texts_.showing, browser_.show_all()
                                                                ? texts_.all_files
                                                                : browser_.filter().describe()));
        ImGui::SameLine();
        bool show_all = browser_.show_all();
        if (ImGui::Checkbox(texts_.show_all.c_str(), &show_all))
            browser_.set_show_all(show_all);
        remember_item(frame, texts_.show_all);
    }

    ListAction draw_list(DialogFrame& frame) {
        ListAction action;
        const float rows_below = browser_.mode() == FileBrowserMode::save ? 3.0f : 1.0f;
        const float height =
            ImGui::GetContentRegionAvail().y - rows_below * ImGui::GetFrameHeightWithSpacing();
        ImGui::BeginChild("##entries", ImVec2(0, std::max(height, 80.0f)), true);
        const auto& entries = browser_.listing().entries;
        const bool has_up = browser_.folder().has_relative_path();
        const int rows = static_cast<int>(entries.size()) + (has_up ? 1 : 0);
        const float row_height = ImGui::GetTextLineHeightWithSpacing();
        if (scroll_to_selected_ && browser_.selected())
            keep_row_visible(
                static_cast<float>(*browser_.selected() + (has_up ? 1 : 0)) * row_height,
                row_height);
        scroll_to_selected_ = false;
        ImGuiListClipper clipper;
        clipper.Begin(rows, row_height);
        while (clipper.Step()) {
            for (int row = clipper.DisplayStart; row < clipper.DisplayEnd; ++row) {
                if (has_up && row == 0) {
                    if (ImGui::Selectable("..", false, ImGuiSelectableFlags_AllowDoubleClick) &&
                        ImGui::IsMouseDoubleClicked(ImGuiMouseButton_Left))
                        action.up = true;
                    remember_item(frame, "..");
                    continue;
                }
                const std::size_t index = static_cast<std::size_t>(row - (has_up ? 1 : 0));
                draw_entry(frame, entries[index], index, action);
            }
        }
        ImGui::EndChild();
        return action;
    }

    void draw_entry(DialogFrame& frame, const FolderEntry& entry, std::size_t index,
                    ListAction& action) {
        const std::string label = entry.is_folder ? entry.name + "/" : entry.name;
        if (entry.is_folder)
            ImGui::PushStyleColor(ImGuiCol_Text, FOLDER_TEXT);
        const bool selected = browser_.selected() == index;
        const std::string id = label + "##" + std::to_string(index);
        if (ImGui::Selectable(id.c_str(), selected, ImGuiSelectableFlags_AllowDoubleClick)) {
            if (ImGui::IsMouseDoubleClicked(ImGuiMouseButton_Left))
                action.open = index;
            else
                action.select = index;
        }
        if (entry.is_folder)
            ImGui::PopStyleColor();
        remember_item(frame, label);
    }

    void keep_row_visible(float top, float row_height) {
        const float scroll = ImGui::GetScrollY();
        const float visible = ImGui::GetWindowHeight() - 2 * ImGui::GetStyle().WindowPadding.y;
        if (top < scroll)
            ImGui::SetScrollY(top);
        else if (top + row_height > scroll + visible)
            ImGui::SetScrollY(top + row_height - visible);
    }

    bool draw_name_row(DialogFrame& frame) {
        ImGui::AlignTextToFramePadding();
        dialog_text(frame, texts_.file_name);
        ImGui::SameLine();
        ImGui::SetNextItemWidth(-FLT_MIN);
        if (!name_focus_requested_) {
            ImGui::SetKeyboardFocusHere();
            name_focus_requested_ = true;
        }
        const bool entered =
            ImGui::InputText("##name", &browser_.name, ImGuiInputTextFlags_EnterReturnsTrue);
        remember_item(frame, "name");
        if (entered && frame.keys_live)
            browser_.accept();
        return entered;
    }

    // True when the dialog is cancelled.
    bool draw_buttons(DialogFrame& frame) {
        const int button = dialog_buttons(frame, {texts_.ok, texts_.cancel});
        if (button == 0)
            browser_.accept();
        return button == 1 || frame.keys().cancel();
    }

    // Never cancels: No and Escape only take back the choice of the existing file.
    bool draw_replace_question(DialogFrame& frame) {
        dialog_text(frame, dialog_text_with(texts_.replace,
                                            path_utf8(browser_.replace_question()->filename())));
        const int button = dialog_buttons(frame, {texts_.yes, texts_.no});
        if (button == 0 || frame.keys().confirm())
            browser_.answer_replace(true);
        else if (button == 1 || frame.keys().cancel())
            browser_.answer_replace(false);
        return false;
    }

    // Enter on a refused name (no such folder, a folder's name) leaves the field; the keyboard
    // goes back into the name, so it can be fixed without a click.
    void keep_keyboard_in_name_after_refusals() {
        if (browser_.notice() != notice_seen_ && !browser_.notice().empty())
            name_focus_requested_ = false;
        notice_seen_ = browser_.notice();
    }

    void act(const DialogFrame& frame, const ListAction& action) {
        if (action.up)
            browser_.go_up();
        else if (action.open)
            browser_.open_entry(*action.open);
        else if (action.select)
            browser_.select(*action.select);
        else
            act_on_keys(frame);
    }

    void act_on_keys(const DialogFrame& frame) {
        const std::size_t count = browser_.listing().entries.size();
        const auto selected = browser_.selected();
        if (count > 0 && frame.keys().pressed(ImGuiKey_DownArrow)) {
            browser_.select(selected ? std::min(*selected + 1, count - 1) : 0);
            scroll_to_selected_ = true;
        } else if (count > 0 && frame.keys().pressed(ImGuiKey_UpArrow)) {
            browser_.select(selected && *selected > 0 ? *selected - 1 : 0);
            scroll_to_selected_ = true;
        } else if (frame.keys().pressed(ImGuiKey_Backspace) && !ImGui::GetIO().WantTextInput) {
            browser_.go_up();
        } else if (frame.keys().confirm()) {
            if (selected && browser_.listing().entries[*selected].is_folder)
                browser_.open_entry(*selected);
            else
                browser_.accept();
        }
    }

    FileBrowser browser_;
    std::string heading_;
    DialogTexts texts_;
    std::vector<std::string> drives_ = drive_roots();
    std::string path_text_;
    std::filesystem::path shown_folder_;
    bool scroll_to_selected_ = false;
    bool name_focus_requested_ = false;
    std::string notice_seen_;
};

}  // namespace

std::unique_ptr<DialogWindow> make_file_dialog(FileBrowserMode mode, std::string_view filter,
                                               std::string_view initial, std::string title,
                                               const DialogTexts& texts) {
    return std::make_unique<FileDialog>(mode, filter, initial, std::move(title), texts);
}

}  // namespace veldra
