#include "server/sqlite_connection.h"

#include <sqlite3.h>

namespace veldra {

namespace {

[[noreturn]] void throw_sqlite_error(sqlite3* db, std::string_view what) {
    throw SqliteError(std::string(what) + ": " + (db ? sqlite3_errmsg(db) : "out of memory"));
}

}  // namespace

SqliteConnection::SqliteConnection(const std::string& path, SqliteOpen mode) {
    // Full mutex: the HTTP workers share one connection; the store serialises its own
    // multi-statement steps on top of this.
    int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_FULLMUTEX;
    if (mode == SqliteOpen::create)
        flags |= SQLITE_OPEN_CREATE;
    if (sqlite3_open_v2(path.c_str(), &db_, flags, nullptr) != SQLITE_OK) {
        const std::string message = db_ ? sqlite3_errmsg(db_) : "out of memory";
        sqlite3_close(db_);
        db_ = nullptr;
        throw SqliteError("cannot open database \"" + path + "\": " + message);
    }
    // Another process (a backup or an export) may hold a lock for a moment.
    sqlite3_busy_timeout(db_, 5000);
}

SqliteConnection::~SqliteConnection() {
    sqlite3_close(db_);
}

void SqliteConnection::execute(const char* sql) {
    char* message = nullptr;
    if (sqlite3_exec(db_, sql, nullptr, nullptr, &message) != SQLITE_OK) {
        const std::string text = message ? message : sqlite3_errmsg(db_);
        sqlite3_free(message);
        throw SqliteError(text);
    }
}

std::int64_t SqliteConnection::changes() const {
    return sqlite3_changes64(db_);
}

SqliteStatement::SqliteStatement(const SqliteConnection& connection, const char* sql)
    : db_(connection.handle()) {
    if (sqlite3_prepare_v2(db_, sql, -1, &statement_, nullptr) != SQLITE_OK)
        throw_sqlite_error(db_, "cannot prepare a statement");
}

SqliteStatement::~SqliteStatement() {
    sqlite3_finalize(statement_);
}

SqliteStatement& SqliteStatement::bind(int index, std::string_view text) {
    if (sqlite3_bind_text(statement_, index, text.data(), static_cast<int>(text.size()),
                          SQLITE_TRANSIENT) != SQLITE_OK)
        throw_sqlite_error(db_, "cannot bind a parameter");
    return *this;
}

SqliteStatement& SqliteStatement::bind(int index, double number) {
    if (sqlite3_bind_double(statement_, index, number) != SQLITE_OK)
        throw_sqlite_error(db_, "cannot bind a parameter");
    return *this;
}

SqliteStatement& SqliteStatement::bind(int index, std::int64_t number) {
    if (sqlite3_bind_int64(statement_, index, number) != SQLITE_OK)
        throw_sqlite_error(db_, "cannot bind a parameter");
    return *this;
}

bool SqliteStatement::step() {
    const int result = sqlite3_step(statement_);
    if (result == SQLITE_ROW)
        return true;
    if (result == SQLITE_DONE)
        return false;
    throw_sqlite_error(db_, "statement failed");
}

void SqliteStatement::reset() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

std::string SqliteStatement::column_text(int index) const {
    const auto* text = sqlite3_column_text(statement_, index);
    const int size = sqlite3_column_bytes(statement_, index);
    return text ? std::string(reinterpret_cast<const char*>(text), static_cast<std::size_t>(size))
                : std::string();
}

double SqliteStatement::column_double(int index) const {
    return sqlite3_column_double(statement_, index);
}

std::int64_t SqliteStatement::column_int(int index) const {
    return sqlite3_column_int64(statement_, index);
}

bool SqliteStatement::column_is_null(int index) const {
    return sqlite3_column_type(statement_, index) == SQLITE_NULL;
}

}  // namespace veldra
