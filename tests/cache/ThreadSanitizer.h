#pragma once

namespace HBX::test {

/// Another process may end the rest of a closed list; what the list showed is then free for all. That this
/// comes after our reading the thread sanitizer cannot see, as it knows one process only, so the two ends of
/// the way are said: a reader is done with a list, and the lock was taken, under which memory may be used
/// anew.
void doneReading();
void lockTaken();

} // namespace HBX::test
