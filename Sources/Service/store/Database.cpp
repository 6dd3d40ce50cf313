#include "Service/store/Database.hpp"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <stdexcept>

#include "Service/Errors.hpp"

namespace service {

namespace {

constexpr int busyMilliseconds = 10'000;

constexpr auto settings = R"(
    PRAGMA journal_mode = WAL;
    PRAGMA synchronous = FULL;
    PRAGMA foreign_keys = ON;
)";

// From nothing to version 1.
constexpr auto firstTables = R"(
    CREATE TABLE account (name TEXT PRIMARY KEY, password TEXT NOT NULL);
    CREATE TABLE session (
        token TEXT PRIMARY KEY, account TEXT NOT NULL REFERENCES account, expires INTEGER NOT NULL);
    CREATE TABLE project (number INTEGER PRIMARY KEY, id TEXT NOT NULL UNIQUE, name TEXT NOT NULL);
    CREATE TABLE folder (
        number INTEGER PRIMARY KEY, id TEXT NOT NULL UNIQUE, project TEXT NOT NULL REFERENCES project (id),
        name TEXT NOT NULL);
    CREATE INDEX folder_project ON folder (project);
    CREATE TABLE document (
        number INTEGER PRIMARY KEY, id TEXT NOT NULL UNIQUE, folder TEXT NOT NULL REFERENCES folder (id),
        name TEXT NOT NULL, version INTEGER NOT NULL, size INTEGER NOT NULL, created INTEGER NOT NULL,
        author TEXT NOT NULL, UNIQUE (folder, name, version));
    CREATE TABLE resource (
        number INTEGER PRIMARY KEY, id TEXT NOT NULL UNIQUE, name TEXT NOT NULL, size INTEGER NOT NULL,
        created INTEGER NOT NULL, author TEXT NOT NULL);
    PRAGMA user_version = 1;
)";

// From version 1 to version 2.
constexpr auto topicTables = R"(
    CREATE TABLE topic (
        number INTEGER PRIMARY KEY, id TEXT NOT NULL UNIQUE, project TEXT NOT NULL REFERENCES project (id),
        title TEXT NOT NULL, description TEXT NOT NULL, closed INTEGER NOT NULL, created INTEGER NOT NULL,
        modified INTEGER NOT NULL, author TEXT NOT NULL);
    CREATE INDEX topic_project ON topic (project);
    CREATE TABLE viewpoint (
        number INTEGER PRIMARY KEY, id TEXT NOT NULL UNIQUE, topic TEXT NOT NULL REFERENCES topic (id),
        snapshot TEXT NOT NULL REFERENCES resource (id), size INTEGER NOT NULL, created INTEGER NOT NULL,
        author TEXT NOT NULL);
    CREATE INDEX viewpoint_topic ON viewpoint (topic);
    PRAGMA user_version = 2;
)";

constexpr std::array steps = {firstTables, topicTables};

[[noreturn]] void Throw(sqlite3* handle, int code) {
    // SQLite calls only ENOSPC full: a used-up quota or size limit is a failed write to it.
    if (code == SQLITE_FULL || sqlite3_extended_errcode(handle) == SQLITE_IOERR_WRITE) throw StorageFull();
    throw std::runtime_error(std::string("The records cannot be used: ") + sqlite3_errmsg(handle) + ".");
}

void Check(sqlite3* handle, int code) {
    if (code != SQLITE_OK) Throw(handle, code);
}

}  // namespace

void Database::Close::operator()(sqlite3* handle) const {
    sqlite3_close(handle);
}

void Statement::Finalize::operator()(sqlite3_stmt* handle) const {
    sqlite3_finalize(handle);
}

Database::Database(const std::filesystem::path& file) {
    sqlite3* opened = nullptr;
    const int code =
        sqlite3_open_v2(file.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    handle.reset(opened);
    Check(opened, code);
    sqlite3_busy_timeout(opened, busyMilliseconds);
    Execute(settings);
    Prepare();
}

void Database::Prepare() {
    Transaction transaction(*this);
    Statement version(*this, "PRAGMA user_version");
    version.Step();
    const auto done = static_cast<size_t>(version.Integer(0));
    if (done > steps.size()) {
        throw std::runtime_error("The records were written by a newer version of this program.");
    }
    std::for_each(steps.begin() + done, steps.end(), [this](const char* step) { Execute(step); });
    transaction.Commit();
}

void Database::Execute(const char* sql) {
    Check(handle.get(), sqlite3_exec(handle.get(), sql, nullptr, nullptr, nullptr));
}

Transaction::Transaction(Database& database) : database(database), lock(database.mutex) {
    database.Execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
    if (!committed) sqlite3_exec(database.handle.get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::Commit() {
    database.Execute("COMMIT");
    committed = true;
}

Statement::Statement(Database& database, const char* sql) : database(database.handle.get()) {
    sqlite3_stmt* prepared = nullptr;
    Check(this->database, sqlite3_prepare_v2(this->database, sql, -1, &prepared, nullptr));
    handle.reset(prepared);
}

void Statement::Bind(int index, const std::string& value) {
    Check(database, sqlite3_bind_text64(handle.get(), index, value.data(), value.size(), SQLITE_TRANSIENT,
                                        SQLITE_UTF8));
}

void Statement::Bind(int index, int64_t value) {
    Check(database, sqlite3_bind_int64(handle.get(), index, value));
}

bool Statement::Step() {
    const int code = sqlite3_step(handle.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE) Throw(database, code);
    return code == SQLITE_ROW;
}

std::string Statement::Text(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(handle.get(), column));
    return text == nullptr ? "" : std::string(text, sqlite3_column_bytes(handle.get(), column));
}

int64_t Statement::Integer(int column) const {
    return sqlite3_column_int64(handle.get(), column);
}

}  // namespace service
