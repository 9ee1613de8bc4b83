#include <gtest/gtest.h>

#include <optional>

#include "net/http_fixture.h"
#include "net/obj_api.h"
#include "runtime/log.h"
#include "trials/server_session.h"

namespace veldra {
namespace {

class TotalOfLevelsTest : public testing::HttpFixture {
protected:
    TotalOfLevelsTest() { api.initialize("http://study/", "game", "pw"); }
    std::optional<std::optional<double>> total_of(const std::vector<std::string>& levels,
                                                  int http_status, const std::string& body) {
        const auto total = user_get_total_score_of_levels(api, "P017", levels);
        answer_last(http_status, body);
        if (!total.is_fulfilled())
            return std::nullopt;
        return total.value();
    }
    obj_api& api = runtime.instance_create_depth<obj_api>(0, 0, 0);
};

// Level names match however their slashes were written, records of other levels and records
// without a score are left out.
TEST_F(TotalOfLevelsTest, AddsTheScoresOfTheSessionsLevelsOnly) {
    const std::string records = R"([
        {"level_info": {"filename": "levels\\a.txt"}, "result": {"trial_score": 10}},
        {"level_info": {"filename": "levels/b.txt"}, "result": {"trial_score": 2.5}},
        {"level_info": {"filename": "levels/other.txt"}, "result": {"trial_score": 100}},
        {"level_info": {"filename": "levels/b.txt"}, "result": {}},
        {"level_info": {"filename": "levels/b.txt"}, "result": {"trial_score": "7"}}
    ])";
    const auto total = total_of({"levels/a.txt", "levels\\b.txt"}, 200, records);
    ASSERT_TRUE(total && *total);
    EXPECT_EQ(**total, 12.5);
    EXPECT_EQ(last_request().url,
              "http://study/api/game/trialsPerUser/P017?fields=level_info,result");
}

TEST_F(TotalOfLevelsTest, ARefusedRequestIsNoTotalAndAWarning) {
    LogCapture log;
    const auto total = total_of({"levels/a.txt"}, 404, R"({"error": "unknown"})");
    ASSERT_TRUE(total);
    EXPECT_FALSE(*total);
    EXPECT_TRUE(log.contains("Failed to get user submitted trials!"));
}

}  // namespace
}  // namespace veldra
