#include <HBXCommon/HBXAbort.h>
#include <HBXCommon/HBXLog.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <stdexcept>

#include "support/CapturedLog.h"
#include "support/Threads.h"

namespace HBX {
namespace {

class LogTest : public testing::Test {
protected:
    void TearDown() override {
        setAbortHook(nullptr);
        debug_level = 2;
    }

    test::CapturedLog lines;
    const Log2 log{"M", "src/F", 7, "HBX::f", "HBX::f"};
};

TEST_F(LogTest, WritesOnlyLinesThatTheLevelAdmits) {
    for (const int level : {0, 1, 4}) {
        debug_level = level;
        for (const int asked : {1, 2, 3, 4})
            log.put(asked, "x");
        log.put("y"); // without a level
        EXPECT_EQ(lines.take(), level == 0 ? "" : level == 1 ? "1 x\n1 y\n" : "1 x\n2 x\n3 x\n4 x\n1 y\n");
    }
}

TEST_F(LogTest, LinesOfAnyLengthAreWholeAndKeepErrno) {
    debug_level = 4;
    for (const std::size_t length : {0U, 510U, 511U, 512U, 513U, 70000U}) {
        errno = ENOENT;
        log.put(4, "%s.", std::string(length, 'a').c_str());
        log.put("plain %%");
        EXPECT_EQ(errno, ENOENT);
        EXPECT_EQ(lines.take(), "4 " + std::string(length, 'a') + ".\n1 plain %\n");
    }
}

TEST_F(LogTest, SinkThatThrowsDoesNotReachTheCaller) {
    setLogSink([](const HBXLogLine&) { throw std::runtime_error("full"); });
    log.put(1, "x");
}

TEST_F(LogTest, DefaultSinkWritesOneLineToStandardError) {
    setLogSink(nullptr);
    testing::internal::CaptureStderr();
    log.put(1, "first\nsecond");
    const std::string text = testing::internal::GetCapturedStderr();
    EXPECT_NE(text.find("1 [M] src/F:7 first second\n"), std::string::npos) << text;
}

TEST_F(LogTest, AbortHookGetsThePlaceAfterItIsLogged) {
    debug_level = 1;
    setAbortHook([this](const HBXSourcePlace& place) {
        EXPECT_EQ(lines.take(), "1 Assertion failed: M, src/F, line 284, function HBX::g\n");
        throw std::runtime_error(place.function);
    });
    EXPECT_THROW(abort("M", "src/F", 284, "HBX::g", "HBX::g"), std::runtime_error);
}

TEST_F(LogTest, AbortEndsTheProgramAlsoWhenTheHookReturns) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    setLogSink(nullptr);
    EXPECT_DEATH(abort("M", "src/F", 1, "f", "f"), "Assertion failed: M, src/F, line 1, function f");
    setAbortHook([](const HBXSourcePlace&) {});
    EXPECT_DEATH(abort("M", "src/F", 1, "f", "f"), "Assertion failed");
}

TEST_F(LogTest, SinkMayBeReplacedWhileThreadsLog) {
    std::atomic<int> count{0};
    const HBXLogSink sink = [&](const HBXLogLine&) { ++count; };
    setLogSink(sink);
    const auto write = [this] {
        for (int n = 0; n < 500; ++n)
            log.put(1, "line %d", n);
    };
    const auto replace = [&] {
        for (int n = 0; n < 50; ++n)
            setLogSink(sink);
    };
    test::runThreads({write, write, write, write, replace});
    EXPECT_EQ(count, 4 * 500);
}

} // namespace
} // namespace HBX
