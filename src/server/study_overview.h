#pragma once
// What the researcher's page shows of a study, as plain data read from the store in one go:
// who is registered, which levels have arrived from whom, when each participant was last heard
// from, and the latest records. Rendering is admin_page_html.h; the reading is TrialStore's.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace veldra {

struct ParticipantProgress {
    std::string user_id;
    std::string last_heard;               // UTC "2026-11-26T04:30:00Z"; "" when never
    std::vector<std::int64_t> records;    // per level of StudyOverview::levels
    std::size_t levels_with_records = 0;  // distinct levels among them
};

struct LatestRecord {
    std::int64_t id = 0;  // arrival order
    std::string received_at;
    std::string user_id;
    std::string level_file;
    double seed = 0;
    double trial_score = 0;
};

struct StudyOverview {
    std::size_t registered = 0;
    std::size_t started = 0;   // with at least one record
    std::size_t finished = 0;  // with records of `levels_to_finish` distinct levels
    // From levels= when the researcher gave it; else the most levels any participant has, so
    // that "finished" means "as far as the most advanced participant".
    std::size_t levels_to_finish = 0;
    bool levels_given = false;
    std::int64_t records = 0;
    std::vector<std::string> levels;  // every level file with a record, in order of first arrival
    std::vector<ParticipantProgress> participants;  // every registered id, sorted
    std::vector<LatestRecord> latest;               // newest first
};

// Sets started, finished and levels_to_finish from the participants; `levels_given` 0 means the
// researcher gave no level count.
void count_study_progress(StudyOverview& overview, std::size_t levels_given);

}  // namespace veldra
