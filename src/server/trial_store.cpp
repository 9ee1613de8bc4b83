#include "server/trial_store.h"

#include <sqlite3.h>

namespace veldra {

namespace {

// received_at is the server's clock when the record arrived (UTC), for the researchers; nothing
// about the sender (address, user agent) is stored.
constexpr const char* SCHEMA = R"sql(
CREATE TABLE IF NOT EXISTS users (
    user_id TEXT PRIMARY KEY NOT NULL
);
CREATE TABLE IF NOT EXISTS trials (
    id INTEGER PRIMARY KEY,
    user_id TEXT NOT NULL REFERENCES users (user_id),
    level_file TEXT NOT NULL,
    seed REAL NOT NULL,
    trial_score REAL NOT NULL,
    received_at TEXT NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%SZ', 'now')),
    record TEXT NOT NULL,
    UNIQUE (user_id, level_file, seed)
);
PRAGMA user_version = 1;
)sql";

}  // namespace

TrialStore::TrialStore(const std::string& path, SqliteOpen mode) : db_(path, mode) {
    db_.execute("PRAGMA journal_mode = WAL");
    db_.execute("PRAGMA synchronous = FULL");
    db_.execute("PRAGMA foreign_keys = ON");
    // Only a new file gets the schema, so that an export or a backup opening the database
    // next to a running server writes nothing into it.
    if (schema_version() == 0)
        db_.execute(SCHEMA);
}

std::int64_t TrialStore::schema_version() {
    SqliteStatement query(db_, "PRAGMA user_version");
    return query.step() ? query.column_int(0) : 0;
}

void TrialStore::register_users(const std::vector<std::string>& user_ids) {
    std::lock_guard lock(mutex_);
    db_.execute("BEGIN");
    try {
        SqliteStatement insert(db_, "INSERT OR IGNORE INTO users (user_id) VALUES (?1)");
        for (const std::string& id : user_ids) {
            insert.bind(1, id).step();
            insert.reset();
        }
        db_.execute("COMMIT");
    } catch (...) {
        db_.execute("ROLLBACK");
        throw;
    }
}

bool TrialStore::user_exists(const std::string& user_id) {
    std::lock_guard lock(mutex_);
    SqliteStatement query(db_, "SELECT 1 FROM users WHERE user_id = ?1");
    return query.bind(1, user_id).step();
}

StoreOutcome TrialStore::store_trial(const TrialKey& key, double trial_score,
                                     const std::string& record_json) {
    std::lock_guard lock(mutex_);
    SqliteStatement insert(db_,
                           "INSERT INTO trials (user_id, level_file, seed, trial_score, record) "
                           "VALUES (?1, ?2, ?3, ?4, ?5) "
                           "ON CONFLICT (user_id, level_file, seed) DO NOTHING");
    insert.bind(1, key.user_id).bind(2, key.level_file).bind(3, key.seed);
    insert.bind(4, trial_score).bind(5, record_json).step();
    if (db_.changes() == 1)
        return StoreOutcome::stored;
    SqliteStatement stored(
        db_, "SELECT record FROM trials WHERE user_id = ?1 AND level_file = ?2 AND seed = ?3");
    stored.bind(1, key.user_id).bind(2, key.level_file).bind(3, key.seed);
    if (stored.step() && stored.column_text(0) == record_json)
        return StoreOutcome::already_stored;
    return StoreOutcome::conflict;
}

std::vector<std::string> TrialStore::levels_of_user(const std::string& user_id) {
    std::lock_guard lock(mutex_);
    SqliteStatement query(db_,
                          "SELECT level_file FROM trials WHERE user_id = ?1 "
                          "GROUP BY level_file ORDER BY MIN(id)");
    query.bind(1, user_id);
    std::vector<std::string> out;
    while (query.step())
        out.push_back(query.column_text(0));
    return out;
}

std::vector<std::string> TrialStore::records_of_user(const std::string& user_id) {
    std::lock_guard lock(mutex_);
    SqliteStatement query(db_, "SELECT record FROM trials WHERE user_id = ?1 ORDER BY id");
    query.bind(1, user_id);
    std::vector<std::string> out;
    while (query.step())
        out.push_back(query.column_text(0));
    return out;
}

double TrialStore::total_score_of_user(const std::string& user_id) {
    std::lock_guard lock(mutex_);
    SqliteStatement query(db_, "SELECT TOTAL(trial_score) FROM trials WHERE user_id = ?1");
    query.bind(1, user_id);
    return query.step() ? query.column_double(0) : 0.0;
}

void TrialStore::for_each_record(const std::function<void(const std::string&)>& visit) {
    std::lock_guard lock(mutex_);
    SqliteStatement query(db_, "SELECT record FROM trials ORDER BY id");
    while (query.step())
        visit(query.column_text(0));
}

void TrialStore::backup_to(const std::string& path) {
    std::lock_guard lock(mutex_);
    SqliteConnection target(path, SqliteOpen::create);
    sqlite3_backup* backup = sqlite3_backup_init(target.handle(), "main", db_.handle(), "main");
    if (!backup)
        throw SqliteError("cannot back up to \"" + path + "\": " + sqlite3_errmsg(target.handle()));
    // Pages in steps, so that a writer elsewhere is held up for one step at most; a write
    // between steps makes SQLite start over, which is what keeps the copy consistent.
    int result = SQLITE_OK;
    for (int waits = 0; result == SQLITE_OK || result == SQLITE_BUSY || result == SQLITE_LOCKED;) {
        result = sqlite3_backup_step(backup, 256);
        if ((result == SQLITE_BUSY || result == SQLITE_LOCKED) && ++waits < 500)
            sqlite3_sleep(20);
        else if (result == SQLITE_BUSY || result == SQLITE_LOCKED)
            break;  // held for ten seconds: report it rather than hang
    }
    sqlite3_backup_finish(backup);
    if (result != SQLITE_DONE)
        throw SqliteError("cannot back up to \"" + path + "\": " + sqlite3_errstr(result));
}

}  // namespace veldra
