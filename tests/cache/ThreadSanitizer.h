#pragma once

#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>
#endif

namespace HBX::test {

// Another process may end the rest of a closed list; what the list showed is then free for all. That this
// comes after our reading the thread sanitizer cannot see, as it knows one process only, so the two ends of
// the way are said: a reader is done with a list, and the lock was taken, under which memory may be used
// anew.
#ifdef __SANITIZE_THREAD__
inline int wayThroughOthers;
inline void doneReading() { __tsan_release(&wayThroughOthers); }
inline void lockTaken() { __tsan_acquire(&wayThroughOthers); }
#else
inline void doneReading() {}
inline void lockTaken() {}
#endif

} // namespace HBX::test
