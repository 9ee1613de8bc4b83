#include "runtime/once.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "runtime/callstack.h"
#include "runtime/gc.h"
#include "runtime/log.h"

namespace veldra {
namespace {

void initializer_under_test(bool& called) {
    VELDRA_SCOPE();
    once_only_first_call(called);
}

void start_up_step(bool& called) {
    VELDRA_SCOPE();
    initializer_under_test(called);
}

void start_up(bool& called) {
    VELDRA_SCOPE();
    start_up_step(called);
}

TEST(OnceOnly, SecondCallLogsTheMessageWithTheCallStack) {
    GcScope collector;
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

TEST(OnceOnly, TheCallStackShowsEachCallerOnceInnermostFirst) {
    GcScope collector;
    LogCapture capture;
    bool called = true;
    start_up(called);
    ASSERT_EQ(capture.lines.size(), 1u);
    const std::string& text = capture.lines[0].message;
    // A frame names its function with its parameters (g++: "start_up(bool&)") or without
    // (clang: "start_up"); either way the name ends there, so "start_up" is not "start_up_step".
    const auto at = [&](const char* name) {
        const std::size_t with_parameters = text.find(std::string(name) + "(");
        return with_parameters != std::string::npos ? with_parameters
                                                    : text.find(std::string(name) + " (");
    };
    ASSERT_NE(at("initializer_under_test"), std::string::npos) << text;
    ASSERT_NE(at("start_up_step"), std::string::npos) << text;
    ASSERT_NE(at("start_up"), std::string::npos) << text;
    EXPECT_LT(at("initializer_under_test"), at("start_up_step"));
    EXPECT_LT(at("start_up_step"), at("start_up"));
    // Three frames below the message line: no frame printed twice.
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3);
}

std::size_t callstack_depth() {
    return debug_get_callstack().size();
}

std::size_t callstack_depth_in_a_marked_function() {
    VELDRA_SCOPE();
    return callstack_depth();
}

TEST(Callstack, MarkersPushAFrameAndPopOnExit) {
    const std::size_t outer = callstack_depth();
    EXPECT_EQ(callstack_depth_in_a_marked_function(), outer + 1);
    EXPECT_EQ(callstack_depth(), outer);
}

}  // namespace
}  // namespace veldra
