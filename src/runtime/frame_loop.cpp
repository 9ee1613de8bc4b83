#include "runtime/frame_loop.h"

#include "runtime/runtime.h"
#include "runtime/services.h"

namespace veldra {

std::size_t run_program_frame(Runtime& runtime, Services& services) {
    services.input->poll();
    runtime.run_step_events();
    for (const HttpAsyncEvent& response : services.http->poll())
        runtime.raise_async_http(response);
    runtime.run_draw_events();
    services.dialogs->end_frame();
    const std::size_t drawn = services.renderer->draw_list().commands().size();
    services.renderer->present();
    runtime.end_frame();
    services.clock->frame_done();
    return drawn;
}

}  // namespace veldra
