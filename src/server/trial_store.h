#pragma once
// The study's database: registered participants and their trial records, in one SQLite file in
// WAL mode (readers such as an export or a backup never stop the server from writing).
//
// A record is identified by (user id, level file, seed) and is stored once: the game retries a
// submission whose answer it never saw, so the same record may arrive several times, and a
// different record under a stored key is refused rather than allowed to replace the first.
// Every write is committed (synchronous=FULL) before the call returns, so an answer the server
// gives is never ahead of the disk.
//
// Each participant's last request is kept (its time only: nothing about the sender is stored)
// for the researcher's page.
//
// Safe to call from several threads: one connection, one mutex.

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "server/sqlite_connection.h"
#include "server/study_overview.h"

namespace veldra {

struct TrialKey {
    std::string user_id;
    std::string level_file;  // the record's level_info.filename
    double seed = 0;
};

enum class StoreOutcome {
    stored,          // new: committed now
    already_stored,  // the same record was stored before (a retry)
    conflict,        // a different record holds this key; the stored one is kept
};

class TrialStore {
public:
    // Opens (with SqliteOpen::create also makes) the database and brings its schema up to
    // date. Throws SqliteError with a message naming the file.
    TrialStore(const std::string& path, SqliteOpen mode);

    // Adds participants; ids already registered are left as they are.
    void register_users(const std::vector<std::string>& user_ids);
    bool user_exists(const std::string& user_id);

    // Notes the time of a request from a registered participant; an unknown id changes nothing.
    void note_heard_from(const std::string& user_id);

    // `record_json` is kept as given and compared byte for byte with a later arrival under the
    // same key, so callers pass one canonical form (compact, keys sorted). Also notes the
    // participant as heard from, in the same commit.
    StoreOutcome store_trial(const TrialKey& key, double trial_score,
                             const std::string& record_json);

    // Level files the user has records of, each once, in the order of their first record.
    std::vector<std::string> levels_of_user(const std::string& user_id);
    // The user's records (JSON text), in arrival order.
    std::vector<std::string> records_of_user(const std::string& user_id);
    // Sum of the records' result.trial_score; 0 for a user with none.
    double total_score_of_user(const std::string& user_id);
    // Every record of every user, in arrival order.
    void for_each_record(const std::function<void(const std::string& record_json)>& visit);

    std::int64_t record_count_of_user(const std::string& user_id);
    // Removes every record of the participant (a withdrawal of consent) and when they were last
    // heard from; the id stays registered. Gives the number of records removed.
    std::int64_t delete_records_of_user(const std::string& user_id);

    // Everything but the progress counts (count_study_progress), with the `latest_count` newest
    // records.
    StudyOverview study_overview(std::size_t latest_count);

    // A consistent copy of the whole database into `path` through SQLite's online backup,
    // which another connection may keep writing during. Throws SqliteError on failure.
    void backup_to(const std::string& path);

private:
    std::int64_t schema_version();
    void upgrade_schema();
    // The parts of the calls above that run with the mutex held.
    StoreOutcome insert_trial(const TrialKey& key, double trial_score,
                              const std::string& record_json);
    StudyOverview read_overview(std::size_t latest_count);

    std::mutex mutex_;
    SqliteConnection db_;
};

}  // namespace veldra
