#include "server/request_log.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

constexpr std::time_t NOV_26_2026_0430 = 1795667400;

TEST(RequestLogTest, ALineSaysWhenWhatAndHowItEnded) {
    EXPECT_EQ(request_log_line(NOV_26_2026_0430, "POST", "/api/game/trials", 201, 1234, 19),
              "2026-11-26T04:30:00Z POST /api/game/trials 201 in=1234 out=19");
}

TEST(RequestLogTest, ACraftedPathCannotStartALineOfItsOwn) {
    const std::string line = request_log_line(
        NOV_26_2026_0430, "GET", "/x\n2026-11-26T04:30:00Z GET / 200\\\xC3\xBC", 404, 0, 0);
    EXPECT_EQ(line.find('\n'), std::string::npos);
    EXPECT_EQ(line,
              "2026-11-26T04:30:00Z GET /x\\x0A2026-11-26T04:30:00Z\\x20GET\\x20/\\x20200\\x5C"
              "\\xC3\\xBC 404 in=0 out=0");
}

}  // namespace
}  // namespace veldra
