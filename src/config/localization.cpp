#include "config/localization.h"

#include "async/dialog_promises.h"

#include "config/debug_settings.h"
#include "runtime/callstack.h"
#include "runtime/files.h"
#include "runtime/log.h"
#include "runtime/once.h"
#include "runtime/paths.h"
#include "serial/ini.h"
#include "util/text.h"

namespace veldra {

std::optional<std::string> Language::get(std::string_view lid,
                                         const std::vector<std::string>& args) const {
    auto it = lines.find(lid);
    if (it == lines.end()) {
        log_warning("Language doesn't have LID \"" + std::string(lid) + "\".");
        return std::nullopt;
    }
    std::string text = it->second;
    for (std::size_t i = 0; i < args.size(); ++i)
        text = string_replace_all(text, "{" + std::to_string(i) + "}", args[i]);
    return text;
}

void initialize_localization(Localization& localization) {
    VELDRA_SCOPE();
    if (!once_only_first_call(localization.initialized))
        return;
    localization.active.reset();
}

std::optional<Language> parse_language(std::string_view ini_text, std::string_view path) {
    const IniFile ini = ini_parse(ini_text);
    const std::string where = "Localization file \"" + std::string(path) + "\"";
    for (const IniFile::SkippedLine& skipped : ini.skipped_lines)
        log_warning(where + ", line " + std::to_string(skipped.line) + ": \"" +
                    skipped.text.substr(0, 80) + "\" is not a LID=text line; it is skipped.");
    const auto* section = ini.section("localization");
    if (!section) {
        log_error(where + " has no [localization] section.");
        return std::nullopt;
    }
    Language language;
    for (const auto& [lid, text] : *section)
        language.lines[lid] = string_replace_all(text, "\\n", "\n");
    return language;
}

bool load_and_set_localization(Files& files, Localization& localization, std::string_view code) {
    const std::string path =
        make_included_file_filename("localization/" + std::string(code) + ".ini");
    std::optional<Language> language;
    // A code is a name, never a path: "../../x" must not read a file outside the languages.
    if (code.empty() || code.find_first_of("/\\") != std::string_view::npos) {
        log_error("\"" + std::string(code) +
                  "\" is not a language code: give a name such as en or de, without \"/\" or "
                  "\"\\\".");
    } else if (const FileText text = files.read(path, MAX_LOCALIZATION_FILE_BYTES); !text) {
        log_error("Localization file \"" + path + "\" " + text.error + ".");
    } else {
        language = parse_language(*text.text, path);  // which logs what is wrong with the text
    }
    if (!language) {
        log_error("Failed to load localization file \"" + path + "\".");
        return false;
    }
    localization.active = std::move(language);
    return true;
}

Promise<std::optional<std::string>> _debug_ask_localization(DebugSettings& debugs, Dialogs& dialogs,
                                                            Files& files) {
    using Code = std::optional<std::string>;
    return dialog_get_string(dialogs,
                             "Enter localization file's name.\n E.g. the name of "
                             "/localization/en.ini would be just \"en\".",
                             debugs.lang)
        .and_then([&debugs, &files](const std::string& answer) -> Code {
            std::string code = string_trim(answer);
            debugs.lang = code;
            save_active_debug_settings(files, debugs);
            if (code.empty())
                return std::nullopt;
            return code;
        })
        // A cancelled question (always, in headless runs) keeps the stored answer.
        .and_cancelled([] { return Code(); });
}

}  // namespace veldra
