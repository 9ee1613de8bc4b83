#include "config/text_ids.h"

#include "config/localization.h"

namespace veldra {

const std::vector<std::string_view>& all_text_ids() {
    static const std::vector<std::string_view> ids = {
        lid::Hud_TotalScore,
        lid::Hud_Energy,
        lid::Hud_Time,
        lid::Hud_HintWalk,
        lid::Hud_HintClick,
        lid::Hud_HintZoom,
        lid::Hud_HintFullscreen,
        lid::TraitMenu_Title,
        lid::TraitMenu_Intro,
        lid::TraitMenu_Openness,
        lid::TraitMenu_OpennessHelp,
        lid::TraitMenu_Conscientiousness,
        lid::TraitMenu_ConscientiousnessHelp,
        lid::TraitMenu_Extraversion,
        lid::TraitMenu_ExtraversionHelp,
        lid::TraitMenu_Agreeableness,
        lid::TraitMenu_AgreeablenessHelp,
        lid::TraitMenu_Neuroticism,
        lid::TraitMenu_NeuroticismHelp,
        lid::TraitMenu_Start,
        lid::TraitMenu_Chosen,
        lid::TrialEndMenu_Title,
        lid::TrialEndMenu_ResultSurvived,
        lid::TrialEndMenu_ResultPerished,
        lid::TrialEndMenu_Score,
        lid::TrialEndMenu_NoScore,
        lid::TrialEndMenu_Submit,
        lid::TrialEnd_CloseHint,
        lid::TrialEnd_ReplayMatched,
        lid::TrialEnd_ReplayDiffered,
        lid::FinishedMenu_Title,
        lid::FinishedMenu_ScoreText,
        lid::FinishedMenu_SaveResults,
        lid::FinishedMenu_Saved,
        lid::FinishedMenu_UrlLinkButtonText,
        lid::FinishedMenu_NoLinkText,
        lid::Quit_Title,
        lid::Quit_Text,
        lid::Quit_Confirm,
        lid::Quit_Cancel,
        lid::Loading_Connecting,
        lid::Loading_Loading,
        lid::Loading_Submitting,
        lid::AutoRun_Progress,
        lid::Dialog_Ok,
        lid::Dialog_Cancel,
        lid::Dialog_Yes,
        lid::Dialog_No,
        lid::Dialog_OpenTitle,
        lid::Dialog_SaveTitle,
        lid::Dialog_Folder,
        lid::Dialog_Go,
        lid::Dialog_Drive,
        lid::Dialog_Showing,
        lid::Dialog_AllFiles,
        lid::Dialog_ShowAll,
        lid::Dialog_FileName,
        lid::Dialog_Replace,
        lid::FinishedMenu_SaveTitle,
        lid::FinishedMenu_SaveFailed,
        lid::Dialog_TooMany,
        lid::Dialog_NothingThere,
        lid::Dialog_NoFolder,
        lid::Dialog_TypeName,
        lid::Dialog_ChooseFile,
        lid::Dialog_IsAFolder,
        lid::FileError_NoFolder,
        lid::FileError_NoPermission,
        lid::FileError_DiskFull,
        lid::FileError_ReadOnly,
        lid::FileError_IsFolder,
    };
    return ids;
}

std::string text_of(const Localization& localization, std::string_view lid,
                    const std::vector<std::string>& args) {
    const Language* language = localization.active_language();
    return language ? language->get(lid, args).value_or("") : std::string();
}

std::string text_replace(std::string text, std::string_view placeholder, std::string_view value) {
    if (placeholder.empty())
        return text;
    for (std::size_t at = text.find(placeholder); at != std::string::npos;
         at = text.find(placeholder, at + value.size()))
        text.replace(at, placeholder.size(), value);
    return text;
}

}  // namespace veldra
