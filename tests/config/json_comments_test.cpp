#include "config/json_comments.h"

#include <gtest/gtest.h>

#include <random>

namespace veldra {
namespace {

TEST(JsonRemoveComments, CutsAtTheLastSlashesOutsideStrings) {
    EXPECT_EQ(_json_remove_comments("\"trial_time\": 60, // comment"), "\"trial_time\": 60, ");
    // Three quotes before the "//": inside a string, the line stays whole.
    EXPECT_EQ(_json_remove_comments("\"next_url\": \"a//b\""), "\"next_url\": \"a//b\"");
    // Only the last comment of a line goes.
    EXPECT_EQ(_json_remove_comments("\"x\": 1, // a // b"), "\"x\": 1, // a ");
    EXPECT_EQ(_json_remove_comments("a\n// whole line\nb"), "a\n\nb");
    EXPECT_EQ(_json_remove_comments(""), "");
    // An escaped quote inside a string neither ends it nor hides a later comment.
    EXPECT_EQ(_json_remove_comments(R"("u": "a\"b//c")"), R"("u": "a\"b//c")");
    EXPECT_EQ(_json_remove_comments(R"("u": "a\"b", // c)"), R"("u": "a\"b", )");
    EXPECT_EQ(_json_remove_comments(R"("u": "a\\", // c)"), R"("u": "a\\", )");
    EXPECT_EQ(_json_remove_comments("\n\n"), "\n\n");
}

TEST(JsonRemoveComments, NeverLengthensAndKeepsLineCountOnRandomInput) {
    std::mt19937 engine(7);
    const std::string alphabet = "/\"\n ab{}:,\\";
    for (int round = 0; round < 5000; ++round) {
        std::string text;
        const int length = static_cast<int>(engine() % 60);
        for (int i = 0; i < length; ++i)
            text.push_back(alphabet[engine() % alphabet.size()]);
        const std::string out = _json_remove_comments(text);
        ASSERT_LE(out.size(), text.size());
        ASSERT_EQ(std::count(out.begin(), out.end(), '\n'),
                  std::count(text.begin(), text.end(), '\n'));
    }
}

}  // namespace
}  // namespace veldra
