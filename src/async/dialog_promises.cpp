#include "async/dialog_promises.h"

#include <optional>
#include <string>

namespace veldra {

namespace {

// The answer callback holds the resolve function, and with it the promise: a dialog that is
// never answered keeps its chain pending, as a cancelled one does not.
DialogAnswer settle_with(const Resolve& resolve) {
    return [resolve](std::optional<std::string> answer) {
        resolve(answer ? Value(std::move(*answer)) : Value());
    };
}

}  // namespace

Promise dialog_get_string(Dialogs& dialogs, std::string_view prompt, std::string_view initial) {
    // Copies: with delayed execution the executor runs after the caller's texts are gone.
    return Promise([&dialogs, prompt = std::string(prompt), initial = std::string(initial)](
                       const Resolve& resolve, const Reject&) {
        dialogs.get_string(prompt, initial, settle_with(resolve));
    });
}

Promise dialog_get_open_filename(Dialogs& dialogs, std::string_view filter,
                                 std::string_view initial, std::string_view title) {
    return Promise([&dialogs, filter = std::string(filter), initial = std::string(initial),
                    title = std::string(title)](const Resolve& resolve, const Reject&) {
        dialogs.get_open_filename(filter, initial, title, settle_with(resolve));
    });
}

Promise dialog_get_save_filename(Dialogs& dialogs, std::string_view filter,
                                 std::string_view initial, std::string_view title) {
    return Promise([&dialogs, filter = std::string(filter), initial = std::string(initial),
                    title = std::string(title)](const Resolve& resolve, const Reject&) {
        dialogs.get_save_filename(filter, initial, title, settle_with(resolve));
    });
}

}  // namespace veldra
