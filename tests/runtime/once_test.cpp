#include "runtime/once.h"

#include <gtest/gtest.h>

#include "runtime/callstack.h"
#include "runtime/context.h"
#include "runtime/log.h"

namespace veldra {
namespace {

void initializer_under_test(bool& called) {
    VELDRA_SCOPE();
    once_only_first_call(called);
}

TEST(OnceOnly, SecondCallLogsTheMessageWithTheCallStack) {
    Context context;
    ContextScope scope(context);
    LogCapture capture;
    bool called = false;
    EXPECT_TRUE(once_only_first_call(called));
    EXPECT_TRUE(capture.lines.empty());
    initializer_under_test(called);
    ASSERT_EQ(capture.lines.size(), 1u);
    const auto& line = capture.lines[0];
    EXPECT_EQ(line.level, LogLevel::error);
    EXPECT_EQ(line.message.rfind(std::string(ONCE_ONLY_MESSAGE) + "\n", 0), 0u);
    EXPECT_NE(line.message.find("initializer_under_test"), std::string::npos);
}

TEST(Callstack, InnermostFrameFirstAndScopesPopOnExit) {
    auto outer = debug_get_callstack();
    {
        VELDRA_SCOPE();
        auto inner = debug_get_callstack();
        EXPECT_EQ(inner.size(), outer.size() + 1);
    }
    EXPECT_EQ(debug_get_callstack().size(), outer.size());
}

TEST(RemoveTextTags, StripsColourAndLayoutTagsOnly) {
    EXPECT_EQ(remove_text_tags("[#dd5555]Error:[/c] x"), "Error: x");
    EXPECT_EQ(remove_text_tags("[pin_center][slant](not connected)"), "(not connected)");
    EXPECT_EQ(remove_text_tags("array [1, 2] and [Caps]"), "array [1, 2] and [Caps]");
    EXPECT_EQ(remove_text_tags("unclosed [#abc"), "unclosed [#abc");
}

}  // namespace
}  // namespace veldra
