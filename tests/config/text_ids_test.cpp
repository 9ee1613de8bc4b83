#include "config/text_ids.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>
#include <set>
#include <sstream>

#include "config/file_error_texts.h"
#include "config/localization.h"
#include "runtime/file_io.h"
#include "runtime/log.h"

namespace veldra {
namespace {

Language shipped_language(const std::string& code) {
    const std::string path =
        std::string(VELDRA_SOURCE_DIR) + "/datafiles/localization/" + code + ".ini";
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    auto language = parse_language(text.str(), path);
    EXPECT_TRUE(language) << path;
    return language.value_or(Language{});
}

TEST(ShippedLanguages, HaveEveryTextTheGameLooksUpAndTheSameKeys) {
    LogCapture capture;  // a stray line in a file would be warned
    const Language en = shipped_language("en");
    const Language de = shipped_language("de");
    for (std::string_view id : all_text_ids()) {
        EXPECT_TRUE(en.lines.contains(id)) << "en.ini lacks " << id;
        EXPECT_TRUE(de.lines.contains(id)) << "de.ini lacks " << id;
    }
    std::set<std::string> en_keys, de_keys;
    for (const auto& [key, text] : en.lines) {
        en_keys.insert(key);
        EXPECT_FALSE(text.empty()) << "en " << key;
    }
    for (const auto& [key, text] : de.lines) {
        de_keys.insert(key);
        EXPECT_FALSE(text.empty()) << "de " << key;
    }
    EXPECT_EQ(en_keys, de_keys);
    EXPECT_EQ(capture.count(""), 0u);
}

TEST(TextOf, FillsArgumentsAndIsEmptyWithoutALanguage) {
    Localization localization;
    LogCapture capture;
    EXPECT_EQ(text_of(localization, lid::FinishedMenu_Saved, {"x.csv"}), "");
    localization.active = shipped_language("en");
    EXPECT_EQ(text_of(localization, lid::FinishedMenu_Saved, {"x.csv"}),
              "The results are saved in \"x.csv\".");
    EXPECT_EQ(text_replace("TRIAL_NUMBER of TRIAL_NUMBER", "TRIAL_NUMBER", "2/3"), "2/3 of 2/3");
}

TEST(FileErrorText, CommonReasonsSpeakTheLanguageOthersStayAsTheSystemSaidThem) {
    Localization localization;
    localization.active = shipped_language("de");
    EXPECT_EQ(file_error_text(localization, system_error_text(ENOENT)),
              "der Ordner existiert nicht");
    EXPECT_EQ(file_error_text(localization, system_error_text(EACCES)),
              "dort darf nicht geschrieben werden");
    EXPECT_EQ(file_error_text(localization, system_error_text(ENOSPC)), "der Datenträger ist voll");
    EXPECT_EQ(file_error_text(localization, system_error_text(EROFS)),
              "der Datenträger kann nur gelesen werden");
    EXPECT_EQ(file_error_text(localization, "is a directory, not a file"),
              "das ist ein Ordner, keine Datei");
    EXPECT_EQ(file_error_text(localization, system_error_text(EIO)), system_error_text(EIO));
    // Without a language the system's words are better than nothing.
    LogCapture quiet;
    EXPECT_EQ(file_error_text(Localization{}, system_error_text(ENOSPC)),
              system_error_text(ENOSPC));
}

}  // namespace
}  // namespace veldra
