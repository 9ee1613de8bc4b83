#include "server/study_overview.h"

#include <algorithm>

namespace veldra {

void count_study_progress(StudyOverview& overview, std::size_t levels_given) {
    std::size_t most = 0;
    for (const ParticipantProgress& participant : overview.participants)
        most = std::max(most, participant.levels_with_records);
    overview.levels_given = levels_given > 0;
    overview.levels_to_finish = overview.levels_given ? levels_given : most;
    overview.registered = overview.participants.size();
    overview.started = 0;
    overview.finished = 0;
    for (const ParticipantProgress& participant : overview.participants) {
        if (participant.levels_with_records == 0)
            continue;
        ++overview.started;
        if (participant.levels_with_records >= overview.levels_to_finish)
            ++overview.finished;
    }
}

}  // namespace veldra
