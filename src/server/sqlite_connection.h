#pragma once
// A thin RAII layer over SQLite's C interface: one connection, prepared statements with bound
// parameters (SQL text is never built from data), and errors as exceptions that carry
// SQLite's own message, because every caller of the store either answers 500 or stops.

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace veldra {

class SqliteError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

enum class SqliteOpen {
    create,    // make the file when it is missing
    existing,  // fail when it is missing: reading a mistyped path must not leave an empty file
};

class SqliteConnection {
public:
    SqliteConnection(const std::string& path, SqliteOpen mode);
    ~SqliteConnection();
    SqliteConnection(const SqliteConnection&) = delete;
    SqliteConnection& operator=(const SqliteConnection&) = delete;

    // Statements without parameters or results (schema, pragmas, transactions).
    void execute(const char* sql);
    // Rows changed by the last INSERT, UPDATE or DELETE.
    std::int64_t changes() const;
    sqlite3* handle() const { return db_; }

private:
    sqlite3* db_ = nullptr;
};

class SqliteStatement {
public:
    SqliteStatement(const SqliteConnection& connection, const char* sql);
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;

    // Parameters count from 1, as in the SQL text's "?1", "?2".
    SqliteStatement& bind(int index, std::string_view text);
    SqliteStatement& bind(int index, double number);
    SqliteStatement& bind(int index, std::int64_t number);

    // True while there is a row to read; false when the statement is done.
    bool step();
    // Ready to step again with new bindings.
    void reset();
    std::string column_text(int index) const;
    double column_double(int index) const;
    std::int64_t column_int(int index) const;
    bool column_is_null(int index) const;

private:
    sqlite3* db_;
    sqlite3_stmt* statement_ = nullptr;
};

}  // namespace veldra
