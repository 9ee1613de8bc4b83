#include "async/dialog_promises.h"

#include <optional>
#include <string>

namespace veldra {

namespace {

// The answer callback holds the settlers, and with them the promise: a dialog that is never
// answered keeps its chain pending, as a cancelled one does not.
DialogAnswer settle_with(const Resolve<std::string>& resolve, const Cancel& cancel) {
    return [resolve, cancel](std::optional<std::string> answer) {
        if (answer)
            resolve(std::move(*answer));
        else
            cancel();
    };
}

}  // namespace

Promise<std::string> dialog_get_string(Dialogs& dialogs, std::string_view prompt,
                                       std::string_view initial) {
    // Copies: with delayed execution the executor runs after the caller's texts are gone.
    return Promise<std::string>(
        [&dialogs, prompt = std::string(prompt), initial = std::string(initial)](
            const Resolve<std::string>& resolve, const Reject&, const Cancel& cancel) {
            dialogs.get_string(prompt, initial, settle_with(resolve, cancel));
        });
}

Promise<std::string> dialog_get_open_filename(Dialogs& dialogs, std::string_view filter,
                                              std::string_view initial, std::string_view title) {
    return Promise<std::string>([&dialogs, filter = std::string(filter),
                                 initial = std::string(initial),
                                 title = std::string(title)](const Resolve<std::string>& resolve,
                                                             const Reject&, const Cancel& cancel) {
        dialogs.get_open_filename(filter, initial, title, settle_with(resolve, cancel));
    });
}

Promise<std::string> dialog_get_save_filename(Dialogs& dialogs, std::string_view filter,
                                              std::string_view initial, std::string_view title) {
    return Promise<std::string>([&dialogs, filter = std::string(filter),
                                 initial = std::string(initial),
                                 title = std::string(title)](const Resolve<std::string>& resolve,
                                                             const Reject&, const Cancel& cancel) {
        dialogs.get_save_filename(filter, initial, title, settle_with(resolve, cancel));
    });
}

}  // namespace veldra
