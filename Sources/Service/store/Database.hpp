#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace service {

// The records, in SQLite with a write-ahead log. A committed transaction survives a kill and a power cut.
class Database {
  public:
    // Opens or makes the file and brings its tables up to date. Throws std::runtime_error.
    explicit Database(const std::filesystem::path& file);

  private:
    friend class Transaction;
    friend class Statement;

    struct Close {
        void operator()(sqlite3* handle) const;
    };

    void Execute(const char* sql);
    void Prepare();

    std::unique_ptr<sqlite3, Close> handle;
    std::mutex mutex;
};

// Everything read and written while it lives is one unit; undone unless committed.
class Transaction {
  public:
    explicit Transaction(Database& database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void Commit();

  private:
    friend class Statement;

    Database& database;
    std::lock_guard<std::mutex> lock;
    bool committed = false;
};

// One SQL statement; parameters are bound in order. Throws StorageFull or std::runtime_error.
class Statement {
  public:
    template <typename... Values>
    Statement(Transaction& transaction, const char* sql, const Values&... values)
        : Statement(transaction.database, sql) {
        int index = 0;
        (Bind(++index, values), ...);
    }

    // Moves to the next row; false when there is none.
    bool Step();

    std::string Text(int column) const;
    int64_t Integer(int column) const;

  private:
    friend class Database;

    struct Finalize {
        void operator()(sqlite3_stmt* handle) const;
    };

    Statement(Database& database, const char* sql);
    void Bind(int index, const std::string& value);
    void Bind(int index, int64_t value);

    sqlite3* database;
    std::unique_ptr<sqlite3_stmt, Finalize> handle;
};

}  // namespace service
