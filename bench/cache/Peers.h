#pragma once

#include "Store.h"

namespace HBX::bench {

/// Ours: records of environments as long as the peers' values. Each call takes the lock in the lock file; a
/// view and a walk are a list, which holds a snapshot and not the lock. Survives killed processes.
std::unique_ptr<Store> openHbx(const char* path, Open how);

/// Boost.Interprocess containers in a mapped file of a fixed size. The lock lies in the file and is held
/// during each call and for a view: one process-shared mutex, or the sharable kind, which lets readers in
/// together but costs more when nobody else is there. Values are replaced in place. A process that is killed
/// in a call leaves the file locked.
std::unique_ptr<Store> openFlatMap(const char* path, Open how);
std::unique_ptr<Store> openFlatMapSharable(const char* path, Open how);
std::unique_ptr<Store> openMap(const char* path, Open how);

/// LMDB: a transaction a change, written through the map and never synced; one read transaction that is
/// renewed and reset for each call. Survives killed processes.
std::unique_ptr<Store> openLmdb(const char* path, Open how);

/// SQLite: write-ahead log, never synced, prepared statements, an automatic transaction a statement, all
/// pages in its cache; or the file mapped instead. Survives killed processes.
std::unique_ptr<Store> openSqlite(const char* path, Open how);
std::unique_ptr<Store> openSqliteMapped(const char* path, Open how);

inline constexpr Peer kPeers[] = {{"hbx", openHbx},
                                  {"flat_map", openFlatMap},
                                  {"flat_map_sharable", openFlatMapSharable},
                                  {"map", openMap},
                                  {"lmdb", openLmdb},
                                  {"sqlite", openSqlite},
                                  {"sqlite_mapped", openSqliteMapped}};

} // namespace HBX::bench
