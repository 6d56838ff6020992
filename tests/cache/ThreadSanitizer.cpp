#ifdef __SANITIZE_THREAD__

#include <ctime>

#include <pthread.h>

/// The thread sanitizer of this compiler does not see a lock that is taken this way, and then takes its
/// release for a mistake. It sees the other way of waiting for a limited time.
extern "C" int pthread_mutex_clocklock(pthread_mutex_t* mutex, clockid_t clock, const timespec* deadline) {
    constexpr long kSecond = 1'000'000'000;
    timespec now{};
    timespec until{};
    clock_gettime(clock, &now);
    clock_gettime(CLOCK_REALTIME, &until);
    const long nanoseconds = until.tv_nsec + deadline->tv_nsec - now.tv_nsec + kSecond;
    until.tv_sec += deadline->tv_sec - now.tv_sec + nanoseconds / kSecond - 1;
    until.tv_nsec = nanoseconds % kSecond;
    return pthread_mutex_timedlock(mutex, &until);
}

#endif
