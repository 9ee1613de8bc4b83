#include "server/study_overview.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

StudyOverview with_levels_done(const std::vector<std::size_t>& levels_done) {
    StudyOverview overview;
    for (std::size_t i = 0; i < levels_done.size(); ++i)
        overview.participants.push_back(ParticipantProgress{.user_id = "p" + std::to_string(i),
                                                            .last_heard = "",
                                                            .records = {},
                                                            .levels_with_records = levels_done[i]});
    return overview;
}

TEST(StudyOverviewTest, WithoutALevelCountFinishedMeansAsFarAsTheMostAdvanced) {
    StudyOverview overview = with_levels_done({0, 3, 1, 3, 2});
    count_study_progress(overview, 0);
    EXPECT_EQ(overview.registered, 5u);
    EXPECT_EQ(overview.started, 4u);
    EXPECT_EQ(overview.finished, 2u);
    EXPECT_EQ(overview.levels_to_finish, 3u);
    EXPECT_FALSE(overview.levels_given);
}

TEST(StudyOverviewTest, AGivenLevelCountDecidesWhoFinished) {
    StudyOverview overview = with_levels_done({0, 3, 1, 4, 2});
    count_study_progress(overview, 4);
    EXPECT_EQ(overview.started, 4u);
    EXPECT_EQ(overview.finished, 1u);
    EXPECT_TRUE(overview.levels_given);
    count_study_progress(overview, 9);
    EXPECT_EQ(overview.finished, 0u);
}

TEST(StudyOverviewTest, NobodyHasFinishedAStudyNobodyStarted) {
    StudyOverview overview = with_levels_done({0, 0});
    count_study_progress(overview, 0);
    EXPECT_EQ(overview.started, 0u);
    EXPECT_EQ(overview.finished, 0u);
}

}  // namespace
}  // namespace veldra
