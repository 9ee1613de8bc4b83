#pragma once
// Records on their way to the research server. A record is written here, whole and synced to
// disk, before it is sent, and leaves only once the server has confirmed it: a crash, a lost
// connection or a server that is down leaves it waiting, and the next start for that user sends
// it before the session goes on. The server stores a record once however often it arrives, so
// sending one again after a lost answer is harmless.
//
// One file per record, named by when it was put and by its key (user id, level file, seed): a
// file is whole or absent, a record put twice is kept once, and two programs started for
// different users never write the same file. The files are the records as JSON, so a researcher
// can read one, and hand it over by other means if a participant's machine never gets online.

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace veldra {

struct OutboxEntry {
    std::filesystem::path path;
    std::string user_id;
    std::string body;  // the record as JSON text, sent as it is
};

// What identifies a record on the server; the same three make the same file name.
struct OutboxKey {
    std::string user_id;
    std::string level_file;
    double seed = 0;
};

class Outbox {
public:
    explicit Outbox(std::filesystem::path folder) : folder_(std::move(folder)) {}

    // Keeps `body` until `confirm`. When a record of the same key is waiting already, that one
    // is returned and nothing is written. nullopt, with the path tried and the reason in
    // `error`, when the folder cannot be written.
    std::optional<OutboxEntry> put(const OutboxKey& key, const std::string& body,
                                   std::string& error);

    // The records waiting, oldest first; every user's when `user_id` is nullopt. A file that
    // cannot be read or is not a record is named in `problems` and left where it is.
    std::vector<OutboxEntry> waiting(const std::optional<std::string>& user_id,
                                     std::vector<std::string>* problems = nullptr) const;

    // The server has the record: its file goes. "" on success, else the reason.
    std::string confirm(const OutboxEntry& entry);

    const std::filesystem::path& folder() const { return folder_; }

private:
    std::filesystem::path folder_;
};

// The outbox of this run: the folder "outbox" beside `log_folder`.
std::filesystem::path outbox_folder(const std::filesystem::path& log_folder);

}  // namespace veldra
