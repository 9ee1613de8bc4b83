#pragma once
// Sending what waits in the outbox: the records of one user (or of everybody), oldest first,
// each removed once the server has confirmed it.

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "async/promise.h"
#include "net/outbox.h"

namespace veldra {

struct OutboxSendResult {
    std::size_t sent = 0;     // confirmed by the server and gone from the outbox
    std::size_t waiting = 0;  // still there, to be sent at the next try
    // Files that are not records, and confirmed records whose file could not be removed (they
    // are sent again next time, which the server answers without storing them twice).
    std::vector<std::string> problems;
};

// Posts one record's JSON text; fulfils with true when the server confirmed it.
using OutboxSubmit = std::function<Promise<bool>(const std::string& body)>;

class obj_api;

// Posts a waiting record through the API client, parsed back into the record it was written
// from; a file that is not JSON is not confirmed.
OutboxSubmit outbox_submit_with(obj_api& api);

// Stops at the first record the server does not confirm: it is down or refuses, the rest would
// fare no better, and each would wait for its own time-out.
Promise<OutboxSendResult> outbox_send_waiting(std::shared_ptr<Outbox> outbox,
                                              std::optional<std::string> user_id,
                                              OutboxSubmit submit);

}  // namespace veldra
