#include <HBXCommon/HBXAbort.h>
#include <HBXCommon/HBXLog.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace HBX {
namespace {

/// Keeps what is logged as "level module file:line function text", and restores level and sink.
class LogTest : public testing::Test {
protected:
    void SetUp() override {
        setLogSink([this](const HBXLogLine& line) {
            lines.push_back(std::to_string(line.level) + " " + line.place.module + " " + line.place.file +
                            ":" + std::to_string(line.place.line) + " " + line.place.function + " " +
                            std::string(line.text));
        });
    }
    void TearDown() override {
        setLogSink(nullptr);
        setAbortHook(nullptr);
        debug_level = 2;
    }

    std::vector<std::string> lines;
    const Log2 log{"M", "src/F", 7, "HBX::f", "HBX::f"};
};

TEST_F(LogTest, WritesOnlyLinesThatTheLevelAdmits) {
    for (const int level : {0, 1, 4}) {
        lines.clear();
        debug_level = level;
        for (const int asked : {1, 2, 3, 4})
            log.put(asked, "x");
        log.put("without level");
        EXPECT_EQ(lines.size(), level == 0 ? 0U : static_cast<unsigned>(level) + 1) << level;
    }
}

TEST_F(LogTest, LinesOfAnyLengthAreWholeWithPlaceAndKeepErrno) {
    debug_level = 4;
    for (const std::size_t length : {0U, 510U, 511U, 512U, 513U, 70000U}) {
        lines.clear();
        errno = ENOENT;
        log.put(4, "%s.", std::string(length, 'a').c_str());
        log.put("plain %%");
        EXPECT_EQ(errno, ENOENT);
        EXPECT_EQ(lines, (std::vector<std::string>{"4 M src/F:7 HBX::f " + std::string(length, 'a') + ".",
                                                   "1 M src/F:7 HBX::f plain %"}));
    }
}

TEST_F(LogTest, SinkThatThrowsDoesNotReachTheCaller) {
    setLogSink([](const HBXLogLine&) { throw std::runtime_error("full"); });
    log.put(1, "x");
    EXPECT_TRUE(lines.empty());
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
        EXPECT_EQ(lines.size(), 1U);
        throw std::runtime_error(place.function);
    });
    EXPECT_THROW(abort("M", "src/F", 284, "HBX::g", "HBX::g"), std::runtime_error);
    EXPECT_EQ(lines.at(0), "1 M src/F:284 HBX::g Assertion failed: M, src/F, line 284, function HBX::g");
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
    std::vector<std::jthread> threads(4);
    for (auto& thread : threads)
        thread = std::jthread([this] {
            for (int n = 0; n < 500; ++n)
                log.put(1, "line %d", n);
        });
    for (int n = 0; n < 50; ++n)
        setLogSink(sink);
    threads.clear();
    EXPECT_EQ(count, 4 * 500);
}

} // namespace
} // namespace HBX
