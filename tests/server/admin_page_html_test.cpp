#include "server/admin_page_html.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

// Participant ids and level names are the participants' own text.
const std::string HOSTILE_ID = "<script>alert('x')</script>";
const std::string HOSTILE_LEVEL = "levels/\"><img src=x onerror=alert(1)>.txt";

StudyOverview hostile_overview() {
    StudyOverview overview;
    overview.levels = {HOSTILE_LEVEL, "b.txt"};
    overview.participants = {
        ParticipantProgress{.user_id = HOSTILE_ID,
                            .last_heard = "2026-11-26T04:30:00Z",
                            .records = {2, 0},
                            .levels_with_records = 1},
        ParticipantProgress{
            .user_id = "p&2", .last_heard = "", .records = {1, 1}, .levels_with_records = 2},
        ParticipantProgress{
            .user_id = "p3", .last_heard = "", .records = {0, 0}, .levels_with_records = 0},
    };
    overview.latest = {LatestRecord{.id = 4,
                                    .received_at = "2026-11-26T04:30:00Z",
                                    .user_id = HOSTILE_ID,
                                    .level_file = HOSTILE_LEVEL,
                                    .seed = 12345,
                                    .trial_score = 2.5}};
    overview.records = 4;
    count_study_progress(overview, 0);
    return overview;
}

TEST(AdminPageHtmlTest, NothingFromTheDatabaseReachesThePageAsMarkup) {
    const std::string html = overview_page_html(hostile_overview());
    EXPECT_EQ(html.find("<script"), std::string::npos);
    EXPECT_EQ(html.find("<img"), std::string::npos);
    EXPECT_NE(html.find("&lt;script&gt;alert(&#39;x&#39;)&lt;/script&gt;"), std::string::npos);
    EXPECT_NE(html.find("levels/&quot;&gt;&lt;img src=x onerror=alert(1)&gt;.txt"),
              std::string::npos);
    // In a link the id is escaped for the query first, so "&" cannot start another parameter.
    EXPECT_NE(html.find("href=\"/admin/delete?user=p%262\""), std::string::npos);
    EXPECT_NE(
        html.find("href=\"/admin/delete?user=%3Cscript%3Ealert%28%27x%27%29%3C%2Fscript%3E\""),
        std::string::npos);

    const std::string confirmation = delete_confirmation_html(HOSTILE_ID, 3, "tok\"en");
    EXPECT_EQ(confirmation.find("<script"), std::string::npos);
    EXPECT_NE(confirmation.find("name=\"token\" value=\"tok&quot;en\""), std::string::npos);
    EXPECT_EQ(deleted_page_html(HOSTILE_ID, 3).find("<script"), std::string::npos);
    EXPECT_EQ(message_page_html("<b>", HOSTILE_ID).find("<script"), std::string::npos);
}

TEST(AdminPageHtmlTest, TheCountsTheGridAndTheDownloadAreOnThePage) {
    const std::string html = overview_page_html(hostile_overview());
    EXPECT_NE(html.find("id=\"registered\">3<"), std::string::npos);
    EXPECT_NE(html.find("id=\"started\">2<"), std::string::npos);
    EXPECT_NE(html.find("id=\"finished\">1<"), std::string::npos);
    EXPECT_NE(html.find("id=\"records\">4<"), std::string::npos);
    EXPECT_NE(html.find("href=\"/admin/trials.csv\""), std::string::npos);
    // Never heard from, and heard from at a time.
    EXPECT_NE(html.find("<td>never</td>"), std::string::npos);
    EXPECT_NE(html.find("<td>2026-11-26T04:30:00Z</td>"), std::string::npos);
    // The hostile participant's row: 2 records of the first level, none of the second.
    EXPECT_NE(html.find("<td class=\"have\">2</td><td class=\"none\"></td>"), std::string::npos);
    EXPECT_NE(html.find("<td class=\"n\">12345</td><td class=\"n\">2.5</td>"), std::string::npos);
    // No script anywhere: the page works with scripts off.
    EXPECT_EQ(html.find("<script"), std::string::npos);
}

TEST(AdminPageHtmlTest, TheConfirmationPostsTheIdAndTokenAndNothingDeletesOnAGet) {
    const std::string html = delete_confirmation_html("p1", 7, "abc123");
    EXPECT_NE(html.find("<form method=\"post\" action=\"/admin/delete\">"), std::string::npos);
    EXPECT_NE(html.find("name=\"user\" value=\"p1\""), std::string::npos);
    EXPECT_NE(html.find("name=\"token\" value=\"abc123\""), std::string::npos);
    EXPECT_NE(html.find("all 7 records"), std::string::npos);
}

TEST(AdminPageHtmlTest, QueryEscapingKeepsOnlyUnreservedBytes) {
    EXPECT_EQ(url_query_escape("aZ0-._~"), "aZ0-._~");
    EXPECT_EQ(url_query_escape("a b&c=d+\xc3\xa9"), "a%20b%26c%3Dd%2B%C3%A9");
}

}  // namespace
}  // namespace veldra
