#include <HBXCommon/HBXLog.h>

#include <HBXCommon/internal/HBXSetting.h>

#include <spdlog/logger.h>
#include <spdlog/sinks/stdout_sinks.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <string>

namespace HBX {

std::atomic<int> debug_level{2};

namespace {

// The loggers and settings are never destroyed, so that static destructors may still log.

spdlog::logger& standardErrorLogger() {
    static auto& logger = *[] {
        auto created = new spdlog::logger("hbx", std::make_shared<spdlog::sinks::stderr_sink_mt>());
        created->set_level(spdlog::level::trace);
        created->set_pattern("%Y-%m-%d %H:%M:%S.%e %P:%t %v");
        return created;
    }();
    return logger;
}

spdlog::level::level_enum spdlogLevel(int level) {
    if (level <= 1)
        return spdlog::level::err;
    if (level == 2)
        return spdlog::level::warn;
    return level == 3 ? spdlog::level::info : spdlog::level::debug;
}

/// Names that come from messages may hold line ends; one line of the log stays one line.
std::string onOneLine(std::string_view text) {
    std::string line(text);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return line;
}

void writeToStandardError(const HBXLogLine& line) {
    standardErrorLogger().log(spdlogLevel(line.level), "{} [{}] {}:{} {}", line.level, line.place.module,
                              line.place.file, line.place.line, onOneLine(line.text));
}

HBXSetting<HBXLogSink>& currentSink() {
    static auto& sink = *new HBXSetting<HBXLogSink>(writeToStandardError);
    return sink;
}

/// Long lines are formatted a second time, into memory that fits.
std::string longLine(const char* format, std::va_list arguments, int length) {
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, arguments);
    text.pop_back();
    return text;
}

void format(int level, const HBXSourcePlace& place, const char* format, std::va_list arguments) {
    char shortLine[512];
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(shortLine, sizeof shortLine, format, arguments);
    const auto sink = currentSink().get();
    if (length >= static_cast<int>(sizeof shortLine))
        (*sink)({level, place, longLine(format, again, length)});
    else if (length >= 0)
        (*sink)({level, place, {shortLine, static_cast<std::size_t>(length)}});
    va_end(again);
}

void write(int level, const HBXSourcePlace& place, const char* text, std::va_list arguments) noexcept {
    const int savedErrno = errno;
    try {
        format(level, place, text, arguments);
    } catch (...) { // a line that cannot be written is lost, the caller goes on
    }
    errno = savedErrno;
}

} // namespace

HBXLogSink setLogSink(HBXLogSink sink) {
    return currentSink().set(sink ? std::move(sink) : HBXLogSink(writeToStandardError));
}

void Logger::put(int level, const char* format, ...) const noexcept {
    if (level > debug_level.load(std::memory_order_relaxed))
        return;
    std::va_list arguments;
    va_start(arguments, format);
    write(level, place_, format, arguments);
    va_end(arguments);
}

void Logger::put(const char* format, ...) const noexcept {
    if (debug_level.load(std::memory_order_relaxed) < 1)
        return;
    std::va_list arguments;
    va_start(arguments, format);
    write(1, place_, format, arguments);
    va_end(arguments);
}

} // namespace HBX
