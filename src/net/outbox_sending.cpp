#include "net/outbox_sending.h"

#include "net/obj_api.h"
#include "serial/json.h"

namespace veldra {

namespace {

struct Sending {
    std::shared_ptr<Outbox> outbox;
    std::vector<OutboxEntry> entries;
    std::size_t next = 0;
    OutboxSubmit submit;
    OutboxSendResult result;
};

Promise<OutboxSendResult> send_from(const std::shared_ptr<Sending>& sending) {
    if (sending->next == sending->entries.size())
        return promise_resolve(sending->result);
    return sending->submit(sending->entries[sending->next].body)
        .and_then([sending](bool confirmed) -> Promise<OutboxSendResult> {
            if (!confirmed) {
                sending->result.waiting = sending->entries.size() - sending->next;
                return promise_resolve(sending->result);
            }
            const std::string problem = sending->outbox->confirm(sending->entries[sending->next]);
            if (!problem.empty())
                sending->result.problems.push_back("sent, but not removed: " + problem);
            ++sending->result.sent;
            ++sending->next;
            return send_from(sending);
        });
}

}  // namespace

OutboxSubmit outbox_submit_with(obj_api& api) {
    return [&api](const std::string& body) {
        const std::optional<Value> record = json_parse(body);
        return record ? api.trial_submit(*record) : promise_resolve(false);
    };
}

Promise<OutboxSendResult> outbox_send_waiting(std::shared_ptr<Outbox> outbox,
                                              std::optional<std::string> user_id,
                                              OutboxSubmit submit) {
    auto sending = std::make_shared<Sending>();
    sending->entries = outbox->waiting(user_id, &sending->result.problems);
    sending->outbox = std::move(outbox);
    sending->submit = std::move(submit);
    return send_from(sending);
}

}  // namespace veldra
