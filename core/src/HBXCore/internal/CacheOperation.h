#pragma once

#include <new>

#include <HBXCore/HBXCacheLogicBase.h>
#include <HBXCore/internal/CacheAttachment.h>
#include <HBXCore/internal/CacheHeader.h>
#include <HBXCore/internal/CacheView.h>

/// What the sources of HBXCacheLogicBase have in common.
namespace HBX {

namespace internal::code {

inline constexpr int kFailed = -1;
inline constexpr int kNotMapped = -2;
inline constexpr int kNoSnapshot = -8;
inline constexpr int kNotLocked = -9;
inline constexpr int kNotRemapped = -10;
inline constexpr int kAbandoned = -14;

} // namespace internal::code

namespace internal {

/// Sizes are cut to whole units of the heap.
inline constexpr std::uint64_t kAlignmentMask = ~(HBXSharedMemoryManager::kAlignment - 1);

} // namespace internal

inline HBXCacheHead& HBXCacheLogicBase::head() const { return internal::headOf(known_.base); }

inline internal::CacheView HBXCacheLogicBase::view() const { return {known_.base, known_.size, format_}; }

/// Runs under the lock. @return what the work does, or a code of its own.
template <class Work>
int HBXCacheLogicBase::locked(Work work) {
    Storage storage;
    if (const int code = lock(storage); code != 0) {
        return code;
    }
    int result = repairing(storage, work);
    if (storage.manager->file().isDamaged()) {
        result = giveUp(storage, internal::code::kNoSnapshot);
    }
    unlock(storage);
    return result;
}

/// A contradiction may lie in what is derived only; once that is made anew the work is tried again. It may
/// have taken effect already, so it must be one that can be repeated.
template <class Work>
int HBXCacheLogicBase::repairing(Storage& storage, Work work) {
    try {
        try {
            return work(storage);
        } catch (const internal::CacheDamage& damage) {
            logDamage(damage);
            if (recover(storage) == 0) {
                return work(storage);
            }
        }
    } catch (const internal::CacheDamage& damage) {
        logDamage(damage);
    } catch (const std::bad_alloc&) { // in the midst of whatever it was
        storage.manager->file().attachment().head().rebuild = 1;
        return internal::code::kFailed;
    }
    return giveUp(storage, internal::code::kAbandoned);
}

} // namespace HBX
