#include "server/trial_export.h"

#include <mutex>
#include <stdexcept>

#include "runtime/file_io.h"
#include "serial/json.h"
#include "trials/trial_data.h"

namespace veldra {

std::string trial_records_as_csv(TrialStore& store) {
    static std::mutex one_at_a_time;
    std::lock_guard lock(one_at_a_time);
    std::string csv = trial_data_as_csv_headers();
    store.for_each_record([&](const std::string& record_json) {
        // Stored records passed the check when they arrived, so each has every column; one
        // that is not JSON was changed by hand, and a CSV without it would hide that.
        const std::optional<Value> record = json_parse(record_json);
        if (!record)
            throw std::runtime_error("a stored record is not JSON: " + record_json);
        csv += trial_data_value_as_csv(*record);
    });
    return csv;
}

std::string export_trial_records(TrialStore& store, const std::string& path) {
    // The whole text first: a failure half-way must not leave a file that looks complete.
    const std::string error = write_whole_file(path, trial_records_as_csv(store));
    return error.empty() ? error : "cannot write \"" + path + "\": " + error;
}

}  // namespace veldra
