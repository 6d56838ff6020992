#include <HBXCommon/HBXAbort.h>

#include <HBXCommon/internal/HBXSetting.h>

#include <cstdlib>

namespace HBX {

namespace {

HBXSetting<HBXAbortHook>& currentHook() {
    static auto& hook = *new HBXSetting<HBXAbortHook>(nullptr);
    return hook;
}

} // namespace

void abort(const char* module, const char* file, int line, const char* function, const char* functionShown) {
    Log2(module, file, line, function, functionShown)
        .put(1, "Assertion failed: %s, %s, line %d, function %s", module, file, line, functionShown);
    if (const auto hook = currentHook().get(); *hook)
        (*hook)({module, file, line, function, functionShown});
    std::abort();
}

HBXAbortHook setAbortHook(HBXAbortHook hook) { return currentHook().set(std::move(hook)); }

} // namespace HBX
