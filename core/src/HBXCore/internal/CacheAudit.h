#pragma once

#include <cstdint>
#include <vector>

#include <HBXCore/internal/CacheView.h>

namespace HBX::internal {

/// A snapshot that somebody may read, and by how many it is held: being current counts as one.
struct CacheRoot {
    std::uint64_t offset;
    std::uint32_t references;
};

/// Goes from the snapshots through all values of a file, and knows then what everything else in the file must
/// be: the counts, and which space is used. Reads only what a killed process cannot have left half-done.
class CacheAudit {
public:
    /// @param roots  every snapshot at most once. Throws CacheDamage, or std::bad_alloc.
    CacheAudit(char* base, const CacheView& view, const std::vector<CacheRoot>& roots);

    /// Writes counts and heap anew. May be cut short at any instruction and repeated.
    void rebuild();
    /// Throws where counts or heap are not what they must be.
    void check() const;

    std::uint64_t valueCount() const { return valueCount_; }
    std::uint64_t valueBytes() const { return valueBytes_; }

private:
    /// A block in use.
    struct Piece {
        std::uint64_t offset;
        std::uint64_t size;
        std::uint32_t references;
        bool isSnapshot;
    };

    void addSnapshot(const CacheRoot& root);
    static void checkOrder(HBXSnapshotHead& snapshot, std::uint64_t offset);
    void joinShared();
    void checkApart() const;
    std::int32_t& countOf(const Piece& piece) const;

    char* base_;
    CacheView view_;
    std::vector<Piece> pieces_;
    std::uint64_t valueCount_ = 0;
    std::uint64_t valueBytes_ = 0;
};

} // namespace HBX::internal
