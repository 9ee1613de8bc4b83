#pragma once
// What the server accepts as a trial record: the game's record as JSON (trials/trial_data.h),
// with every one of the 33 fields of its CSV form present, so that an export never has a hole.
// Fields the server does not know are kept; it never guesses a missing one.

#include <optional>
#include <string>
#include <string_view>

#include "server/trial_store.h"

namespace veldra {

struct CheckedTrialRecord {
    TrialKey key;
    double trial_score = 0;
    // Compact, keys sorted: one text per record however the sender ordered or spaced it, so
    // that a retry compares equal to what was stored.
    std::string canonical_json;
};

struct TrialRecordCheck {
    std::optional<CheckedTrialRecord> record;
    bool malformed_json = false;  // the body is not JSON at all (as opposed to a wrong record)
    std::string problem;          // empty when `record` is set
};

// Never throws. Call trial_data_get_flattened_names() once before sharing this between threads:
// the list is built on first use.
TrialRecordCheck check_trial_record(std::string_view body);

}  // namespace veldra
