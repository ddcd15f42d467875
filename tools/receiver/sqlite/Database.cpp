// Every SQLite result code is looked at; a bad one becomes a DatabaseError with SQLite's words.
#include "sqlite/Database.hpp"

#include <sqlite3.h>

#include <cerrno>

namespace mireth::receiver {
namespace {

// What the system last refused the write-ahead log. Asked of its file: sqlite3_system_errno() knows nothing
// of a commit that failed.
int lastErrorOfLog(sqlite3* connection) {
    sqlite3_file* log = nullptr;
    int error = 0;
    if (sqlite3_file_control(connection, "main", SQLITE_FCNTL_JOURNAL_POINTER, static_cast<void*>(&log)) ==
            SQLITE_OK &&
        log != nullptr && log->pMethods != nullptr) {
        log->pMethods->xFileControl(log, SQLITE_FCNTL_LAST_ERRNO, &error);
    }
    return error;
}

// SQLite says "full" of a write for which there is no room, but not of a sync or of a quota.
bool foundNoRoom(sqlite3* connection) {
    const int code = sqlite3_errcode(connection);
    if (code != SQLITE_IOERR) {
        return code == SQLITE_FULL;
    }
    const int error = lastErrorOfLog(connection);
    return error == ENOSPC || error == EDQUOT;
}

[[noreturn]] void fail(sqlite3* connection) {
    throw DatabaseError(sqlite3_errmsg(connection), foundNoRoom(connection));
}

}  // namespace

void Statement::Finalizer::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

Statement::Statement(sqlite3* connection, std::string_view sql) {
    sqlite3_stmt* statement = nullptr;
    const int code =
        sqlite3_prepare_v2(connection, sql.data(), static_cast<int>(sql.size()), &statement, nullptr);
    statement_.reset(statement);
    if (code != SQLITE_OK) {
        fail(connection);
    }
}

void Statement::check(int code) const {
    if (code != SQLITE_OK && code != SQLITE_ROW && code != SQLITE_DONE) {
        fail(sqlite3_db_handle(statement_.get()));
    }
}

Statement& Statement::bind(std::string_view text) {
    // A null pointer would bind NULL where an empty text is meant.
    check(sqlite3_bind_text64(statement_.get(), ++bound_, text.empty() ? "" : text.data(), text.size(),
                              SQLITE_TRANSIENT, SQLITE_UTF8));
    return *this;
}

Statement& Statement::bind(std::int64_t number) {
    check(sqlite3_bind_int64(statement_.get(), ++bound_, number));
    return *this;
}

Statement& Statement::bindNull() {
    check(sqlite3_bind_null(statement_.get(), ++bound_));
    return *this;
}

bool Statement::step() {
    const int code = sqlite3_step(statement_.get());
    check(code);
    return code == SQLITE_ROW;
}

void Statement::run() {
    while (step()) {
    }
}

void Statement::reset() {
    check(sqlite3_reset(statement_.get()));
    bound_ = 0;
}

std::string Statement::text(int column) const {
    const auto* const bytes = sqlite3_column_text(statement_.get(), column);
    const auto count = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
    return bytes == nullptr ? std::string() : std::string(reinterpret_cast<const char*>(bytes), count);
}

std::int64_t Statement::whole(int column) const {
    return sqlite3_column_int64(statement_.get(), column);
}

bool Statement::isNull(int column) const {
    return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL;
}

void Database::Closer::operator()(sqlite3* connection) const {
    sqlite3_close(connection);
}

Database::Database(const std::string& path, Mode mode) {
    sqlite3* connection = nullptr;
    // A reader opens for writing as well: joining a write-ahead log needs its shared-memory file.
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_NOFOLLOW |
                      (mode == Mode::write ? SQLITE_OPEN_CREATE : 0);
    const int code = sqlite3_open_v2(path.c_str(), &connection, flags, nullptr);
    connection_.reset(connection);
    if (code != SQLITE_OK) {
        throw DatabaseError(path + ": " + sqlite3_errstr(code));
    }
    sqlite3_busy_timeout(connection, 10'000);
    execute("PRAGMA foreign_keys = ON");
    execute("PRAGMA synchronous = FULL");
    execute("PRAGMA secure_delete = ON");
    // Takes effect in a database without tables yet.
    execute(mode == Mode::write ? "PRAGMA auto_vacuum = INCREMENTAL" : "PRAGMA temp_store = MEMORY");
    execute(mode == Mode::write ? "PRAGMA journal_mode = WAL" : "PRAGMA query_only = ON");
}

void Database::execute(const char* sql) const {
    if (sqlite3_exec(connection_.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        fail(connection_.get());
    }
}

void Database::tryExecute(const char* sql) const noexcept {
    sqlite3_exec(connection_.get(), sql, nullptr, nullptr, nullptr);
}

bool Database::tryEmptyLog() const noexcept {
    return sqlite3_wal_checkpoint_v2(connection_.get(), nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr,
                                     nullptr) == SQLITE_OK;
}

bool Database::readPiece(const char* table, const char* column, std::int64_t row, std::uint64_t offset,
                         std::span<unsigned char> into) const {
    sqlite3_blob* opened = nullptr;
    if (sqlite3_blob_open(connection_.get(), "main", table, column, row, 0, &opened) != SQLITE_OK) {
        fail(connection_.get());
    }
    const std::unique_ptr<sqlite3_blob, decltype(&sqlite3_blob_close)> blob(opened, sqlite3_blob_close);
    const auto size = static_cast<std::uint64_t>(sqlite3_blob_bytes(opened));
    return offset <= size && into.size() <= size - offset &&
           sqlite3_blob_read(opened, into.data(), static_cast<int>(into.size()), static_cast<int>(offset)) ==
               SQLITE_OK;
}

std::int64_t Database::lastRow() const {
    return sqlite3_last_insert_rowid(connection_.get());
}

std::int64_t Database::changes() const {
    return sqlite3_changes64(connection_.get());
}

Transaction::~Transaction() {
    if (open_) {
        try {
            database_.execute("ROLLBACK");
        } catch (const DatabaseError&) {
            // SQLite has rolled back by itself already, as it does for some errors.
            open_ = false;
        }
    }
}

void Transaction::commit() {
    database_.execute("COMMIT");
    open_ = false;
}

}  // namespace mireth::receiver
