#pragma once

#include <HBXCommon/HBXExport.h>

#include <atomic>
#include <functional>
#include <string_view>

namespace HBX {

/// Lines of this level and below are written: 1 errors, 2 failed changes, 4 tracing. 2 at the start; may be
/// changed at any time from any thread. Test it before preparing costly arguments of a line.
extern HBX_EXPORT std::atomic<int> debug_level;

/// The place in the sources that a line speaks for. All texts live as long as the program (literals).
struct HBXSourcePlace {
    const char* module;        ///< Library, such as "HBXCommon".
    const char* file;          ///< Path of the source without suffix.
    int line;                  ///< Line in it.
    const char* function;      ///< Qualified name of the function.
    const char* functionShown; ///< The name as lines show it; usually the same.
};

/// One line on its way to the sink.
struct HBXLogLine {
    int level;
    HBXSourcePlace place;
    std::string_view text; ///< Valid during the call only; without a line end.
};

/// Receives every line that passes the level; called on the thread that logs, hence from several at once.
/// What it throws is dropped: a log never fails its caller.
using HBXLogSink = std::function<void(const HBXLogLine&)>;

/// Replaces the sink of the process and returns the previous one. An empty sink stands for the default, which
/// writes to standard error.
HBX_EXPORT HBXLogSink setLogSink(HBXLogSink sink);

/// Writes lines for one place in the sources. Formats nothing unless the level admits the line; errno is
/// kept.
class HBX_EXPORT Logger {
public:
    explicit Logger(const HBXSourcePlace& place) noexcept : place_(place) {}

    /// Writes one line in the style of printf.
    void put(int level, const char* format, ...) const noexcept __attribute__((format(printf, 3, 4)));

    /// The same at level 1.
    void put(const char* format, ...) const noexcept __attribute__((format(printf, 2, 3)));

private:
    HBXSourcePlace place_;
};

/// The logger of one place: `Log2(module, file, line, function, function).put(4, "Calling [%s]", function)`.
class Log2 : public Logger {
public:
    Log2(const char* module, const char* file, int line, const char* function,
         const char* functionShown) noexcept
        : Logger({module, file, line, function, functionShown}) {}

    const Logger& operator*() const noexcept { return *this; }
    const Logger* operator->() const noexcept { return this; }
};

} // namespace HBX
