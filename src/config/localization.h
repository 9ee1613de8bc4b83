#pragma once
// Every text a player reads is looked up by an LID in the active language, one INI file per
// language code under localization/ in the data directory (section [localization],
// `LID=text`). Placeholders are numbered from {0}: the first argument after the LID fills {0}.

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>
#include "async/promise.h"

namespace veldra {

struct DebugSettings;
class Dialogs;
class Files;

struct Language {
    std::map<std::string, std::string, std::less<>> lines;

    // The text of `lid` with {0}, {1}, ... replaced by the arguments; nullopt (and a warning)
    // for an LID the language lacks. A placeholder without an argument stays as it is.
    std::optional<std::string> get(std::string_view lid,
                                   const std::vector<std::string>& args = {}) const;
};

// The ActiveLanguage global and its once-only flag.
struct Localization {
    // nullptr when none is loaded.
    const Language* active_language() const { return active ? &*active : nullptr; }

    bool initialized = false;
    std::optional<Language> active;
};

// Once-only; leaves the game without an active language until one is loaded.
void initialize_localization(Localization& localization);

// Reads localization/{code}.ini through `files` and makes it active; on failure logs and keeps
// the old one.
bool load_and_set_localization(Files& files, Localization& localization, std::string_view code);

// Asks the developer for a language code, remembered in `debugs` and saved through `files`
// (both must outlive the question). Fulfilled with the code, or with nullopt for an empty
// answer or a cancel.
Promise<std::optional<std::string>> _debug_ask_localization(DebugSettings& debugs, Dialogs& dialogs,
                                                            Files& files);

// Builds a language from the text of the INI file at `path`. A stray line is warned with its
// line number and skipped; a file without a [localization] section gives nullopt (logged).
std::optional<Language> parse_language(std::string_view ini_text, std::string_view path);

}  // namespace veldra
