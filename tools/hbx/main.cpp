#include <exception>
#include <string>
#include <vector>

#include <HBXCommon/HBXAbort.h>
#include <HBXCommon/HBXLog.h>
#include <HBXCore/HBXMemoryMappedFile.h>

#include "Command.h"
#include "Console.h"
#include "Home.h"

namespace {

/// The library's log is for agents; people get one line for each failure. Only a broken invariant speaks up.
void quietLog() {
    HBX::debug_level = 0;
    HBX::setAbortHook([](const HBX::HBXSourcePlace& place) {
        HBX::tool::complain(std::string("internal fault in ") + place.function + ", " + place.file +
                            ", line " + std::to_string(place.line));
    });
}

} // namespace

int main(int argc, char** argv) {
    try {
        quietLog();
        HBX::tool::useHome();
        HBX::guardMappedFiles();
        return HBX::tool::runCommandLine(std::vector<std::string>(argv + 1, argv + argc));
    } catch (const HBX::tool::Failure& failure) {
        HBX::tool::complain(failure.what());
        return static_cast<int>(failure.code);
    } catch (const std::exception& error) {
        HBX::tool::complain(error.what());
        return static_cast<int>(HBX::tool::ExitCode::InvalidInput);
    }
}
