// The study server's reader of posted trial records: never throws, and a record it accepts reads
// back from its stored form as the same record, so a retry always matches what was stored.
#include "fuzz/fuzz_support.h"
#include "server/trial_record_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veldra;
    fuzzing::FuzzScope scope;
    const TrialRecordCheck check = check_trial_record(fuzzing::as_text(data, size));
    if (!check.record)
        return 0;
    const TrialRecordCheck again = check_trial_record(check.record->canonical_json);
    if (!again.record || again.record->canonical_json != check.record->canonical_json ||
        again.record->key.user_id != check.record->key.user_id ||
        again.record->key.level_file != check.record->key.level_file)
        __builtin_trap();
    return 0;
}
