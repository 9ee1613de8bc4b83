#pragma once
// Every language-file key (LID) the game looks up, in one list, so a test can check that each
// language has them all. Code names a text by one of these constants, never by a bare string.

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace veldra {

struct Localization;

namespace lid {
inline constexpr std::string_view Hud_TotalScore = "Hud_TotalScore";
inline constexpr std::string_view Hud_Energy = "Hud_Energy";
inline constexpr std::string_view Hud_Time = "Hud_Time";
inline constexpr std::string_view Hud_HintWalk = "Hud_HintWalk";
inline constexpr std::string_view Hud_HintClick = "Hud_HintClick";
inline constexpr std::string_view Hud_HintZoom = "Hud_HintZoom";
inline constexpr std::string_view Hud_HintFullscreen = "Hud_HintFullscreen";
inline constexpr std::string_view TraitMenu_Title = "TraitMenu_Title";
inline constexpr std::string_view TraitMenu_Intro = "TraitMenu_Intro";
inline constexpr std::string_view TraitMenu_Openness = "TraitMenu_Openness";
inline constexpr std::string_view TraitMenu_OpennessHelp = "TraitMenu_OpennessHelp";
inline constexpr std::string_view TraitMenu_Conscientiousness = "TraitMenu_Conscientiousness";
inline constexpr std::string_view TraitMenu_ConscientiousnessHelp =
    "TraitMenu_ConscientiousnessHelp";
inline constexpr std::string_view TraitMenu_Extraversion = "TraitMenu_Extraversion";
inline constexpr std::string_view TraitMenu_ExtraversionHelp = "TraitMenu_ExtraversionHelp";
inline constexpr std::string_view TraitMenu_Agreeableness = "TraitMenu_Agreeableness";
inline constexpr std::string_view TraitMenu_AgreeablenessHelp = "TraitMenu_AgreeablenessHelp";
inline constexpr std::string_view TraitMenu_Neuroticism = "TraitMenu_Neuroticism";
inline constexpr std::string_view TraitMenu_NeuroticismHelp = "TraitMenu_NeuroticismHelp";
inline constexpr std::string_view TraitMenu_Start = "TraitMenu_Start";
inline constexpr std::string_view TraitMenu_Chosen = "TraitMenu_Chosen";
inline constexpr std::string_view TrialEndMenu_Title = "TrialEndMenu_Title";
inline constexpr std::string_view TrialEndMenu_ResultSurvived = "TrialEndMenu_ResultSurvived";
inline constexpr std::string_view TrialEndMenu_ResultPerished = "TrialEndMenu_ResultPerished";
inline constexpr std::string_view TrialEndMenu_Score = "TrialEndMenu_Score";
inline constexpr std::string_view TrialEndMenu_NoScore = "TrialEndMenu_NoScore";
inline constexpr std::string_view TrialEndMenu_Submit = "TrialEndMenu_Submit";
inline constexpr std::string_view TrialEnd_CloseHint = "TrialEnd_CloseHint";
inline constexpr std::string_view TrialEnd_ReplayMatched = "TrialEnd_ReplayMatched";
inline constexpr std::string_view TrialEnd_ReplayDiffered = "TrialEnd_ReplayDiffered";
inline constexpr std::string_view FinishedMenu_Title = "FinishedMenu_Title";
inline constexpr std::string_view FinishedMenu_ScoreText = "FinishedMenu_ScoreText";
inline constexpr std::string_view FinishedMenu_SaveResults = "FinishedMenu_SaveResults";
inline constexpr std::string_view FinishedMenu_Saved = "FinishedMenu_Saved";
inline constexpr std::string_view FinishedMenu_UrlLinkButtonText = "FinishedMenu_UrlLinkButtonText";
inline constexpr std::string_view FinishedMenu_NoLinkText = "FinishedMenu_NoLinkText";
inline constexpr std::string_view Quit_Title = "Quit_Title";
inline constexpr std::string_view Quit_Text = "Quit_Text";
inline constexpr std::string_view Quit_Confirm = "Quit_Confirm";
inline constexpr std::string_view Quit_Cancel = "Quit_Cancel";
inline constexpr std::string_view Loading_Connecting = "Loading_Connecting";
inline constexpr std::string_view Loading_Loading = "Loading_Loading";
inline constexpr std::string_view Loading_Submitting = "Loading_Submitting";
inline constexpr std::string_view AutoRun_Progress = "AutoRun_Progress";
inline constexpr std::string_view Dialog_Ok = "Dialog_Ok";
inline constexpr std::string_view Dialog_Cancel = "Dialog_Cancel";
inline constexpr std::string_view Dialog_Yes = "Dialog_Yes";
inline constexpr std::string_view Dialog_No = "Dialog_No";
inline constexpr std::string_view Dialog_OpenTitle = "Dialog_OpenTitle";
inline constexpr std::string_view Dialog_SaveTitle = "Dialog_SaveTitle";
inline constexpr std::string_view Dialog_Folder = "Dialog_Folder";
inline constexpr std::string_view Dialog_Go = "Dialog_Go";
inline constexpr std::string_view Dialog_Drive = "Dialog_Drive";
inline constexpr std::string_view Dialog_Showing = "Dialog_Showing";
inline constexpr std::string_view Dialog_AllFiles = "Dialog_AllFiles";
inline constexpr std::string_view Dialog_ShowAll = "Dialog_ShowAll";
inline constexpr std::string_view Dialog_FileName = "Dialog_FileName";
inline constexpr std::string_view Dialog_Replace = "Dialog_Replace";
inline constexpr std::string_view FinishedMenu_SaveTitle = "FinishedMenu_SaveTitle";
inline constexpr std::string_view FinishedMenu_SaveFailed = "FinishedMenu_SaveFailed";
inline constexpr std::string_view Dialog_TooMany = "Dialog_TooMany";
inline constexpr std::string_view Dialog_NothingThere = "Dialog_NothingThere";
inline constexpr std::string_view Dialog_NoFolder = "Dialog_NoFolder";
inline constexpr std::string_view Dialog_TypeName = "Dialog_TypeName";
inline constexpr std::string_view Dialog_ChooseFile = "Dialog_ChooseFile";
inline constexpr std::string_view Dialog_IsAFolder = "Dialog_IsAFolder";
inline constexpr std::string_view FileError_NoFolder = "FileError_NoFolder";
inline constexpr std::string_view FileError_NoPermission = "FileError_NoPermission";
inline constexpr std::string_view FileError_DiskFull = "FileError_DiskFull";
inline constexpr std::string_view FileError_ReadOnly = "FileError_ReadOnly";
inline constexpr std::string_view FileError_IsFolder = "FileError_IsFolder";
}  // namespace lid

// Every constant above, for the test that the language files are complete.
const std::vector<std::string_view>& all_text_ids();

// The text of `lid` in the active language with {0}, {1}, ... filled; "" when there is no
// language or no such text (the lookup logs the missing LID).
std::string text_of(const Localization& localization, std::string_view lid,
                    const std::vector<std::string>& args = {});

// `text` with every `placeholder` replaced by `value` (TRIAL_NUMBER, TOTAL_SCORE, ...).
std::string text_replace(std::string text, std::string_view placeholder, std::string_view value);

}  // namespace veldra
