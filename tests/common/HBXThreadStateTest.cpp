#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXInstanceFolders.h>
#include <HBXCommon/HBXLock.h>
#include <HBXCommon/HBXTLS.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <thread>

#include "support/Threads.h"

namespace HBX {
namespace {

TEST(ThreadStorage, HoldsAValuePerThreadAndObjectUntilTheThreadEnds) {
    const auto value = std::make_shared<int>(1);
    {
        const HBXTLS<std::shared_ptr<int>> a;
        const HBXTLS<std::shared_ptr<int>> b;
        a.get() = value;
        std::thread([&] {
            EXPECT_EQ(a.get(), nullptr);
            b.set(value);
            EXPECT_EQ(b.get(), value);
        }).join();
        EXPECT_EQ(a.get(), value);
        EXPECT_EQ(b.get(), nullptr);
        EXPECT_EQ(value.use_count(), 2) << "the other thread's values are gone";
    }
    EXPECT_EQ(value.use_count(), 1);
}

TEST(ThreadLock, KeepsOthersOut) {
    HBXLock lock;
    int counter = 0;
    const auto count = [&] {
        for (int n = 0; n < 1000; ++n) {
            const HBXLockGuard guard(lock);
            ++counter;
        }
    };
    test::runThreads({count, count, count, count});
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

TEST(InstanceFolders, ComeFromTheProviderOrElseFromTheBuild) {
    const std::string built = getConfigurationFile();
    EXPECT_EQ(built, HBXInstanceFolders::etc() + "/agent.xml");
    setFolderProvider({.etc = [] { return "/scratch"; }, .configurationFile = nullptr});
    EXPECT_EQ(HBXInstanceFolders::etc(), "/scratch");
    EXPECT_EQ(getConfigurationFile(), built);
    setFolderProvider({});
    EXPECT_EQ(HBXInstanceFolders::etc() + "/agent.xml", built);
}

} // namespace
} // namespace HBX
