#include "ui/dialog_texts.h"

#include "config/localization.h"
#include "config/text_ids.h"

namespace veldra {

namespace {

void take(const Localization& localization, std::string_view id, std::string& text) {
    const Language* language = localization.active_language();
    if (!language)
        return;
    if (auto found = language->get(id))
        text = std::move(*found);
}

}  // namespace

DialogTexts dialog_texts_from(const Localization& localization) {
    DialogTexts texts;
    take(localization, lid::Dialog_Ok, texts.ok);
    take(localization, lid::Dialog_Cancel, texts.cancel);
    take(localization, lid::Dialog_Yes, texts.yes);
    take(localization, lid::Dialog_No, texts.no);
    take(localization, lid::Dialog_OpenTitle, texts.open_title);
    take(localization, lid::Dialog_SaveTitle, texts.save_title);
    take(localization, lid::Dialog_Folder, texts.folder);
    take(localization, lid::Dialog_Go, texts.go);
    take(localization, lid::Dialog_Drive, texts.drive);
    take(localization, lid::Dialog_Showing, texts.showing);
    take(localization, lid::Dialog_AllFiles, texts.all_files);
    take(localization, lid::Dialog_ShowAll, texts.show_all);
    take(localization, lid::Dialog_FileName, texts.file_name);
    take(localization, lid::Dialog_Replace, texts.replace);
    take(localization, lid::Dialog_TooMany, texts.too_many);
    take(localization, lid::Dialog_NothingThere, texts.nothing_there);
    take(localization, lid::Dialog_NoFolder, texts.no_folder);
    take(localization, lid::Dialog_TypeName, texts.type_name);
    take(localization, lid::Dialog_ChooseFile, texts.choose_file);
    take(localization, lid::Dialog_IsAFolder, texts.is_a_folder);
    return texts;
}

std::string dialog_text_with(const std::string& text, const std::string& value) {
    return text_replace(text, "{0}", value);
}

}  // namespace veldra
