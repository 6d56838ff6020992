#include "Peers.h"

#include <stdexcept>

#include <lmdb.h>

namespace HBX::bench {
namespace {

constexpr std::size_t kMapSize = std::size_t{1} << 30;

void check(int code) {
    if (code != MDB_SUCCESS) {
        throw std::runtime_error(mdb_strerror(code));
    }
}

template <class T, void (*close)(T*)>
struct Closer {
    void operator()(T* resource) const { close(resource); }
};

template <class T, void (*close)(T*)>
using Owner = std::unique_ptr<T, Closer<T, close>>;

using Environment = Owner<MDB_env, mdb_env_close>;
using Transaction = Owner<MDB_txn, mdb_txn_abort>;
using Cursor = Owner<MDB_cursor, mdb_cursor_close>;

Environment openEnvironment(const char* path) {
    MDB_env* made = nullptr;
    check(mdb_env_create(&made));
    Environment environment(made);
    check(mdb_env_set_mapsize(made, kMapSize));
    check(mdb_env_open(made, path, MDB_NOSUBDIR | MDB_WRITEMAP | MDB_NOSYNC | MDB_NOMETASYNC, 0600));
    return environment;
}

Transaction begin(const Environment& environment, unsigned flags) {
    MDB_txn* made = nullptr;
    check(mdb_txn_begin(environment.get(), nullptr, flags, &made));
    return Transaction(made);
}

void commit(Transaction transaction) { check(mdb_txn_commit(transaction.release())); }

MDB_val valueOf(Bytes bytes) { return {bytes.size(), const_cast<std::byte*>(bytes.data())}; }

Bytes bytesOf(const MDB_val& value) { return {static_cast<const std::byte*>(value.mv_data), value.mv_size}; }

/// The read transaction while it is in use.
class View {
public:
    explicit View(const Transaction& reader) : transaction(reader.get()) {
        check(mdb_txn_renew(transaction));
    }
    View(const View&) = delete;
    View& operator=(const View&) = delete;
    ~View() { mdb_txn_reset(transaction); }

private:
    MDB_txn* transaction;
};

class LmdbStore : public Store {
public:
    explicit LmdbStore(const char* path) : environment(openEnvironment(path)) {
        Transaction opening = begin(environment, 0);
        check(mdb_dbi_open(opening.get(), nullptr, 0, &values));
        commit(std::move(opening));
        reader = begin(environment, MDB_RDONLY);
        mdb_txn_reset(reader.get());
    }

    std::uint64_t get(const Key& key) override {
        MDB_val name = valueOf(std::as_bytes(std::span(key)));
        MDB_val found{};
        const View view(reader);
        const int code = mdb_get(reader.get(), values, &name, &found);
        if (code == MDB_NOTFOUND) {
            return 0;
        }
        check(code);
        return Copy(bytesOf(found)).version(key);
    }

    void put(const Key& key, std::uint64_t version) override {
        value.key = key;
        value.version = version;
        MDB_val name = valueOf(std::as_bytes(std::span(key)));
        MDB_val data = valueOf(value.bytes());
        Transaction writer = begin(environment, 0);
        check(mdb_put(writer.get(), values, &name, &data, 0));
        commit(std::move(writer));
    }

    bool remove(const Key& key) override {
        MDB_val name = valueOf(std::as_bytes(std::span(key)));
        Transaction writer = begin(environment, 0);
        const int code = mdb_del(writer.get(), values, &name, nullptr);
        if (code == MDB_NOTFOUND) {
            return false;
        }
        check(code);
        commit(std::move(writer));
        return true;
    }

    std::uint64_t walk() override {
        const View view(reader);
        MDB_cursor* made = nullptr;
        check(mdb_cursor_open(reader.get(), values, &made));
        const Cursor cursor(made);
        MDB_val name{};
        MDB_val found{};
        std::uint64_t sum = 0;
        while (mdb_cursor_get(made, &name, &found, MDB_NEXT) == MDB_SUCCESS) {
            sum += touch(bytesOf(found));
        }
        return sum;
    }

    void openAndCloseView() override { const View view(reader); }

private:
    Environment environment;
    MDB_dbi values = 0;
    Transaction reader;
    Value value;
};

} // namespace

std::unique_ptr<Store> openLmdb(const char* path, Open) { return std::make_unique<LmdbStore>(path); }

} // namespace HBX::bench
