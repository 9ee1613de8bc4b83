#pragma once
// A played trial with the developer tools shown and every switch of the debug menu off, so a
// test turns on only what it looks at.

#include <algorithm>
#include <iterator>
#include <vector>

#include "devtools/debug_menu.h"
#include "devtools/debug_tools.h"
#include "runtime/files.h"
#include "ui/trial_views_fixture.h"

namespace veldra::testing {

class DevtoolsTest : public TrialViewsTest {
protected:
    void SetUp() override {
        TrialViewsTest::SetUp();
        for (const DebugSwitch& which : debug_switches())
            debugs.*which.member = false;
        tools = &create_debug_tools(runtime, {sim, debugs, files});
        tools->visible = true;
    }

    std::vector<DrawCommand> drawn(DrawCommand::Kind kind) {
        std::vector<DrawCommand> found;
        std::ranges::copy_if(renderer().last_frame, std::back_inserter(found),
                             [&](const DrawCommand& c) { return c.kind == kind; });
        return found;
    }
    std::vector<DrawCommand> drawn(DrawCommand::Kind kind, Rgba color) {
        std::vector<DrawCommand> found = drawn(kind);
        std::erase_if(found, [&](const DrawCommand& c) { return !(c.color == color); });
        return found;
    }

    DebugSettings debugs;
    MemoryFiles files;
    obj_debug_tools* tools = nullptr;
};

}  // namespace veldra::testing
