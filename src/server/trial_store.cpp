#include "server/trial_store.h"

#include <sqlite3.h>

#include <unordered_map>

namespace veldra {

namespace {

// received_at and last_heard are the server's clock (UTC), for the researchers; nothing about
// the sender (address, user agent) is stored.
constexpr const char* SCHEMA = R"sql(
CREATE TABLE IF NOT EXISTS users (
    user_id TEXT PRIMARY KEY NOT NULL,
    last_heard TEXT
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
PRAGMA user_version = 2;
)sql";

constexpr const char* NOW = "strftime('%Y-%m-%dT%H:%M:%SZ', 'now')";

}  // namespace

TrialStore::TrialStore(const std::string& path, SqliteOpen mode) : db_(path, mode) {
    db_.execute("PRAGMA journal_mode = WAL");
    db_.execute("PRAGMA synchronous = FULL");
    db_.execute("PRAGMA foreign_keys = ON");
    // Only a new file gets the schema, so that an export or a backup opening the database
    // next to a running server writes nothing into it.
    if (schema_version() == 0)
        db_.execute(SCHEMA);
    else if (mode == SqliteOpen::create)
        upgrade_schema();
}

void TrialStore::upgrade_schema() {
    // Version 1 had no last_heard; its participants show as never heard from until they are.
    if (schema_version() == 1)
        db_.execute(
            "BEGIN; ALTER TABLE users ADD COLUMN last_heard TEXT; "
            "PRAGMA user_version = 2; COMMIT");
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

void TrialStore::note_heard_from(const std::string& user_id) {
    std::lock_guard lock(mutex_);
    SqliteStatement update(
        db_, (std::string("UPDATE users SET last_heard = ") + NOW + " WHERE user_id = ?1").c_str());
    update.bind(1, user_id).step();
}

StoreOutcome TrialStore::store_trial(const TrialKey& key, double trial_score,
                                     const std::string& record_json) {
    std::lock_guard lock(mutex_);
    // One commit for the record and the time, so that a submission costs one sync to disk.
    db_.execute("BEGIN");
    try {
        const StoreOutcome outcome = insert_trial(key, trial_score, record_json);
        SqliteStatement update(
            db_,
            (std::string("UPDATE users SET last_heard = ") + NOW + " WHERE user_id = ?1").c_str());
        update.bind(1, key.user_id).step();
        db_.execute("COMMIT");
        return outcome;
    } catch (...) {
        db_.execute("ROLLBACK");
        throw;
    }
}

StoreOutcome TrialStore::insert_trial(const TrialKey& key, double trial_score,
                                      const std::string& record_json) {
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

std::int64_t TrialStore::record_count_of_user(const std::string& user_id) {
    std::lock_guard lock(mutex_);
    SqliteStatement query(db_, "SELECT COUNT(*) FROM trials WHERE user_id = ?1");
    query.bind(1, user_id);
    return query.step() ? query.column_int(0) : 0;
}

std::int64_t TrialStore::delete_records_of_user(const std::string& user_id) {
    std::lock_guard lock(mutex_);
    db_.execute("BEGIN");
    try {
        SqliteStatement remove(db_, "DELETE FROM trials WHERE user_id = ?1");
        remove.bind(1, user_id).step();
        const std::int64_t removed = db_.changes();
        SqliteStatement forget(db_, "UPDATE users SET last_heard = NULL WHERE user_id = ?1");
        forget.bind(1, user_id).step();
        db_.execute("COMMIT");
        return removed;
    } catch (...) {
        db_.execute("ROLLBACK");
        throw;
    }
}

StudyOverview TrialStore::study_overview(std::size_t latest_count) {
    std::lock_guard lock(mutex_);
    // One read transaction, so that the grid and the latest records agree with each other.
    db_.execute("BEGIN");
    try {
        StudyOverview overview = read_overview(latest_count);
        db_.execute("COMMIT");
        return overview;
    } catch (...) {
        db_.execute("ROLLBACK");
        throw;
    }
}

StudyOverview TrialStore::read_overview(std::size_t latest_count) {
    StudyOverview overview;
    std::unordered_map<std::string, std::size_t> level_index;
    SqliteStatement levels(db_,
                           "SELECT level_file FROM trials GROUP BY level_file ORDER BY MIN(id)");
    while (levels.step()) {
        level_index.emplace(levels.column_text(0), overview.levels.size());
        overview.levels.push_back(levels.column_text(0));
    }
    std::unordered_map<std::string, std::size_t> user_index;
    SqliteStatement users(db_, "SELECT user_id, last_heard FROM users ORDER BY user_id");
    while (users.step()) {
        user_index.emplace(users.column_text(0), overview.participants.size());
        overview.participants.push_back(
            ParticipantProgress{.user_id = users.column_text(0),
                                .last_heard = users.column_text(1),
                                .records = std::vector<std::int64_t>(overview.levels.size(), 0),
                                .levels_with_records = 0});
    }
    SqliteStatement counts(
        db_, "SELECT user_id, level_file, COUNT(*) FROM trials GROUP BY user_id, level_file");
    while (counts.step()) {
        ParticipantProgress& participant =
            overview.participants[user_index.at(counts.column_text(0))];
        participant.records[level_index.at(counts.column_text(1))] = counts.column_int(2);
        ++participant.levels_with_records;
        overview.records += counts.column_int(2);
    }
    SqliteStatement latest(db_,
                           "SELECT id, received_at, user_id, level_file, seed, trial_score "
                           "FROM trials ORDER BY id DESC LIMIT ?1");
    latest.bind(1, static_cast<std::int64_t>(latest_count));
    while (latest.step())
        overview.latest.push_back(LatestRecord{.id = latest.column_int(0),
                                               .received_at = latest.column_text(1),
                                               .user_id = latest.column_text(2),
                                               .level_file = latest.column_text(3),
                                               .seed = latest.column_double(4),
                                               .trial_score = latest.column_double(5)});
    return overview;
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
