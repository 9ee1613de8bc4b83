#include "runtime/frame_loop.h"

#include <gtest/gtest.h>

#include <cmath>

#include <string>
#include <vector>

#include "runtime/gc.h"
#include "runtime/runtime.h"
#include "runtime/services.h"

namespace veldra {
namespace {

// Writes down what it sees of the services in each event, so the frame's order shows.
class obj_frame_probe : public Instance {
    VELDRA_OBJECT(obj_frame_probe, Instance)
public:
    std::vector<std::string>* journal = nullptr;
    void on_step() override {
        journal->push_back(runtime().services().input->frame().pressed(Key::space) ? "step:space"
                                                                                   : "step");
        if (request_in_step) {
            HttpRequest request;
            request.method = "POST";
            request.url = "http://127.0.0.1:9/trials";
            runtime().services().http->request(request);
        }
        request_in_step = false;
    }
    void on_async_http(const HttpAsyncEvent& response) override {
        journal->push_back("http:" + response.url + ":" + std::to_string(response.status));
    }
    void on_draw() override {
        journal->push_back("draw");
        runtime().services().renderer->draw_list().rect(1, 2, 3, 4, {10, 20, 30});
    }
    bool request_in_step = true;
};

class FrameLoopTest : public ::testing::Test {
protected:
    FrameLoopTest() {
        runtime.start(runtime.room_add({"room", nullptr}));
        runtime.instance_create<obj_frame_probe>(0, 0).journal = &journal;
    }
    ScriptedInput& input() { return static_cast<ScriptedInput&>(*services.input); }
    NullRenderer& renderer() { return static_cast<NullRenderer&>(*services.renderer); }

    GcScope collector;
    Services services;
    Runtime runtime{services};
    std::vector<std::string> journal;
};

TEST_F(FrameLoopTest, InputBeforeStepsHttpAnswersAfterThemAndTheDrawingIsPresented) {
    InputFrame space;
    space.keys_pressed[static_cast<std::size_t>(Key::space)] = true;
    space.mouse_x = 800;
    input().frames.push_back(space);

    run_program_frame(runtime, services);
    // The request made in this frame's step is answered in the next frame, after its steps.
    EXPECT_EQ(journal, (std::vector<std::string>{"step:space", "draw"}));
    ASSERT_EQ(renderer().last_frame.size(), 1u);
    EXPECT_EQ(renderer().last_frame[0].color, (Rgba{10, 20, 30}));
    EXPECT_TRUE(services.renderer->draw_list().commands().empty());

    journal.clear();
    run_program_frame(runtime, services);
    EXPECT_EQ(journal,
              (std::vector<std::string>{"step", "http:http://127.0.0.1:9/trials:-1", "draw"}));
    // Once the script runs out, nothing is pressed and the mouse stays where it was.
    EXPECT_FALSE(services.input->frame().pressed(Key::space));
    EXPECT_EQ(services.input->frame().mouse_x, 800);
    EXPECT_EQ(renderer().frames_presented, 2);
    EXPECT_EQ(runtime.frame_count(), 2);
    EXPECT_DOUBLE_EQ(runtime.current_time(), 2 * 1000.0 / 60.0);
}

TEST(SilentAudioTest, CountsWhatItWasAskedToPlayAndKeepsTheVolumeInRange) {
    SilentAudio audio;
    audio.play(Sound::hit);
    audio.play(Sound::hit);
    EXPECT_EQ(audio.played[static_cast<std::size_t>(Sound::hit)], 2);
    EXPECT_EQ(audio.played[static_cast<std::size_t>(Sound::eat)], 0);
    for (double bad : {-1.0, 2.0, std::nan("")}) {
        audio.set_volume(bad);
        EXPECT_GE(audio.volume(), 0.0);
        EXPECT_LE(audio.volume(), 1.0);
    }
}

}  // namespace
}  // namespace veldra
