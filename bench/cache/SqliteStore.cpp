#include "Peers.h"

#include <stdexcept>

#include <sqlite3.h>

namespace HBX::bench {
namespace {

// All pages stay in memory: the amounts are 0.8 GiB of cache (in KiB, hence negative) or of mapped file.
constexpr const char* kCached = "PRAGMA cache_size=-800000";
constexpr const char* kMapped = "PRAGMA mmap_size=800000000";

constexpr const char* kSetUp = "PRAGMA journal_mode=WAL; PRAGMA synchronous=OFF;"
                               "CREATE TABLE IF NOT EXISTS entries(key BLOB PRIMARY KEY, value BLOB)";
constexpr const char* kGet = "SELECT value FROM entries WHERE key=?1";
constexpr const char* kPut =
    "INSERT INTO entries VALUES(?1, ?2) ON CONFLICT DO UPDATE SET value=excluded.value";
constexpr const char* kRemove = "DELETE FROM entries WHERE key=?1";
constexpr const char* kWalk = "SELECT value FROM entries";
constexpr const char* kFirst = "SELECT 1 FROM entries LIMIT 1";

template <class T, int (*close)(T*)>
struct Closer {
    void operator()(T* resource) const { close(resource); }
};

using Connection = std::unique_ptr<sqlite3, Closer<sqlite3, sqlite3_close>>;

void execute(const Connection& connection, const char* sql) {
    if (sqlite3_exec(connection.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(connection.get()));
    }
}

Connection connect(const char* path, const char* memory) {
    sqlite3* made = nullptr;
    const int code = sqlite3_open(path, &made);
    Connection connection(made);
    if (code != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errstr(code));
    }
    sqlite3_busy_timeout(made, 10'000); // milliseconds
    execute(connection, kSetUp);
    execute(connection, memory);
    return connection;
}

class Statement {
public:
    Statement(const Connection& connection, const char* sql) {
        sqlite3_stmt* made = nullptr;
        if (sqlite3_prepare_v3(connection.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &made, nullptr) !=
            SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(connection.get()));
        }
        statement.reset(made);
    }

    /// The bytes are used, not copied, until reset.
    void bind(int number, Bytes bytes) {
        sqlite3_bind_blob(statement.get(), number, bytes.data(), static_cast<int>(bytes.size()),
                          SQLITE_STATIC);
    }

    /// @return whether there is a row.
    bool step() {
        const int code = sqlite3_step(statement.get());
        if (code != SQLITE_ROW && code != SQLITE_DONE) {
            throw std::runtime_error(sqlite3_errstr(code));
        }
        return code == SQLITE_ROW;
    }

    /// Of the current row's first column, until the next step or reset.
    Bytes bytes() {
        const void* data = sqlite3_column_blob(statement.get(), 0);
        const int size = sqlite3_column_bytes(statement.get(), 0);
        return {static_cast<const std::byte*>(data), static_cast<std::size_t>(size)};
    }

    void reset() { sqlite3_reset(statement.get()); }

private:
    std::unique_ptr<sqlite3_stmt, Closer<sqlite3_stmt, sqlite3_finalize>> statement;
};

class SqliteStore : public Store {
public:
    SqliteStore(const char* path, const char* memory) : connection(connect(path, memory)) {}

    std::uint64_t get(const Key& key) override {
        getting.bind(1, std::as_bytes(std::span(key)));
        const std::uint64_t version = getting.step() ? Copy(getting.bytes()).version(key) : 0;
        getting.reset();
        return version;
    }

    void put(const Key& key, std::uint64_t version) override {
        value.key = key;
        value.version = version;
        putting.bind(1, std::as_bytes(std::span(key)));
        putting.bind(2, value.bytes());
        putting.step();
        putting.reset();
    }

    bool remove(const Key& key) override {
        removing.bind(1, std::as_bytes(std::span(key)));
        removing.step();
        removing.reset();
        return sqlite3_changes(connection.get()) == 1;
    }

    std::uint64_t walk() override {
        std::uint64_t sum = 0;
        while (walking.step()) {
            sum += touch(walking.bytes());
        }
        walking.reset();
        return sum;
    }

    void openAndCloseView() override {
        first.step();
        first.reset();
    }

private:
    Connection connection;
    Statement getting{connection, kGet};
    Statement putting{connection, kPut};
    Statement removing{connection, kRemove};
    Statement walking{connection, kWalk};
    Statement first{connection, kFirst};
    Value value;
};

} // namespace

std::unique_ptr<Store> openSqlite(const char* path, Open) {
    return std::make_unique<SqliteStore>(path, kCached);
}

std::unique_ptr<Store> openSqliteMapped(const char* path, Open) {
    return std::make_unique<SqliteStore>(path, kMapped);
}

} // namespace HBX::bench
