#include "server/participant_ids.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

TEST(ParticipantIdsTest, AFileHasOneIdPerLineWithCommentsAndBlankLines) {
    const ParticipantIds ids =
        participant_ids_from_lines("\xEF\xBB\xBF# study 3\r\nP001\r\n\n  P002  \n#P003\nP004");
    EXPECT_EQ(ids.error, "");
    EXPECT_EQ(ids.ids, (std::vector<std::string>{"P001", "P002", "P004"}));
}

TEST(ParticipantIdsTest, AnIdThatAPathCannotCarryIsRefusedWithItsLine) {
    EXPECT_EQ(participant_ids_from_lines("P1\nP 2\n").error,
              "line 2: \"P 2\" has a character that a request path cannot carry as it is");
    for (const char* bad : {"a/b", "a?b", "a#b", "a%20", "a\tb", "a\x7f"})
        EXPECT_FALSE(participant_id_problem(bad).empty()) << bad;
    EXPECT_FALSE(participant_id_problem(std::string(201, 'x')).empty());
    EXPECT_TRUE(participant_id_problem(std::string(200, 'x')).empty());
    EXPECT_TRUE(participant_id_problem("Teilnehmer-\xC3\xBC_1.2").empty());
}

TEST(ParticipantIdsTest, AListIsCommaSeparated) {
    EXPECT_EQ(participant_ids_from_list(" a,b ,,c").ids, (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_FALSE(participant_ids_from_list("a,b/c").error.empty());
}

}  // namespace
}  // namespace veldra
