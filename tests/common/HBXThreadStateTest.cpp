#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXLock.h>
#include <HBXCommon/HBXTLS.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <thread>
#include <vector>

namespace HBX {
namespace {

struct Counted {
    static inline std::atomic<int> alive{0};
    int value = 0;
    Counted() { ++alive; }
    Counted(const Counted& other) : value(other.value) { ++alive; }
    Counted& operator=(const Counted&) = default;
    ~Counted() { --alive; }
};

TEST(ThreadStorage, HoldsAValuePerThreadAndObjectUntilTheThreadEnds) {
    {
        const HBXTLS<Counted> a;
        const HBXTLS<Counted> b;
        a.get().value = 1;
        b.get().value = 2;
        std::thread([&] {
            EXPECT_EQ(a.get().value, 0);
            Counted other;
            other.value = 5;
            a.set(other);
            EXPECT_EQ(a.get().value, 5);
        }).join();
        EXPECT_EQ(a.get().value, 1);
        EXPECT_EQ(b.get().value, 2);
        EXPECT_EQ(Counted::alive, 2) << "the other thread's values are gone";
    }
    EXPECT_EQ(Counted::alive, 0);
}

TEST(ThreadLock, KeepsOthersOut) {
    HBXLock lock;
    int counter = 0;
    std::vector<std::jthread> threads(4);
    for (auto& thread : threads)
        thread = std::jthread([&] {
            for (int n = 0; n < 1000; ++n) {
                const HBXLockGuard guard(lock);
                ++counter;
            }
        });
    threads.clear();
    EXPECT_EQ(counter, 4000);
    const HBXLockGuard guard(lock);
    std::jthread([&] { EXPECT_FALSE(lock.try_lock()); });
}

TEST(ErrorMessage, NamesActionObjectAndCauseAndBelongsToItsThread) {
    errno = EACCES;
    EXPECT_EQ(failWithErrno("open", "/a/b"), -1);
    EXPECT_EQ(errno, EACCES);
    std::jthread([] {
        EXPECT_EQ(getErrorMessage(), "");
        setErrorMessage("theirs");
    }).join();
    EXPECT_EQ(getErrorMessage(), "Cannot open \"/a/b\": Permission denied");
    clearErrorMessage();
    EXPECT_EQ(getErrorMessage(), "");
}

} // namespace
} // namespace HBX
