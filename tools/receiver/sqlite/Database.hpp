// A thin, exact layer over SQLite: a connection, statements with bound values, transactions. Used by
// SqliteStore only. SQLite's own types stay behind it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace mireth::receiver {

/// What SQLite reported. Thrown inside the store, which turns it into its own result.
struct DatabaseError : std::runtime_error {
    explicit DatabaseError(const std::string& what, bool isFull = false)
        : std::runtime_error(what), noRoom(isFull) {}

    bool noRoom;  ///< the disk is full, or the database as large as it may be
};

/// A prepared statement; bind in order, then step.
class Statement {
  public:
    Statement(sqlite3* connection, std::string_view sql);

    Statement& bind(std::string_view text);
    Statement& bind(const std::string& text) { return bind(std::string_view(text)); }
    Statement& bind(std::int64_t number);
    Statement& bind(bool flag) { return bind(std::int64_t{flag ? 1 : 0}); }
    template <typename T>
    Statement& bind(const std::optional<T>& value) {
        return value ? bind(*value) : bindNull();
    }

    /// True when there is a row to read.
    bool step();
    /// Runs the statement to its end.
    void run();
    /// Makes it ready for new values.
    void reset();

    std::string text(int column) const;
    std::int64_t whole(int column) const;
    bool isNull(int column) const;

  private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const;
    };

    Statement& bindNull();
    void check(int code) const;

    std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
    int bound_ = 0;
};

/// A connection. One thread at a time.
class Database {
  public:
    enum class Mode { write, read };

    /// Opens `path` in WAL mode with foreign keys and full synchronisation; in `write` it is made when
    /// absent. What is deleted is overwritten with zeros.
    Database(const std::string& path, Mode mode);

    Statement prepare(std::string_view sql) const { return {connection_.get(), sql}; }
    /// Runs statements that yield nothing.
    void execute(const char* sql) const;
    /// The same where it is no harm when it cannot be done.
    void tryExecute(const char* sql) const noexcept;
    /// Moves the write-ahead log into the database and leaves it empty; false when somebody reads or writes
    /// meanwhile.
    bool tryEmptyLog() const noexcept;
    std::int64_t changes() const;
    /// Fills `into` with bytes of a text or blob from `offset` on, without reading the rest; false when they
    /// are not all there.
    bool readPiece(const char* table, const char* column, std::int64_t row, std::uint64_t offset,
                   std::span<unsigned char> into) const;
    /// The id of the row that was inserted last.
    std::int64_t lastRow() const;

  private:
    struct Closer {
        void operator()(sqlite3* connection) const;
    };

    std::unique_ptr<sqlite3, Closer> connection_;
};

/// Rolls back when it goes without `commit`.
class Transaction {
  public:
    enum class Kind { write, read };

    /// `write` takes the write lock at once, so that nothing read in it can change before it writes; `read`
    /// sees one moment's state throughout.
    Transaction(const Database& database, Kind kind) : database_(database) {
        database_.execute(kind == Kind::write ? "BEGIN IMMEDIATE" : "BEGIN");
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();

    void commit();

  private:
    const Database& database_;
    bool open_ = true;
};

}  // namespace mireth::receiver
