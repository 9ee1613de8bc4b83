#pragma once
// submit_outbox=1: sends every trial result that waits in the outbox beside the log (from
// sessions whose submissions failed) to the research server, and exits: 0 when nothing waits
// any more, 1 when some still do, 2 when no server is configured.

namespace veldra {

struct AppState;

void start_submit_outbox_mode(AppState& app);

}  // namespace veldra
