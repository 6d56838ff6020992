#include "ExitCodes.h"

namespace HBX::tool {

namespace {

constexpr ExitCodeRow kExitCodes[] = {
    {ExitCode::Ok, "ok"},
    {ExitCode::NothingMatched,
     "nothing matched: no such element, no trigger, no run, no such environment; or two "
     "messages differ"},
    {ExitCode::Usage, "wrong call"},
    {ExitCode::InvalidInput,
     "invalid input: no message, no such file, a request that was answered with an error"},
    {ExitCode::LockedOrTimedOut, "locked or timed out: a process does not let go of the cache, watch did not "
                                 "see what it was to wait for"},
    {ExitCode::Damaged, "damaged"},
    {ExitCode::NotPermitted, "not permitted"},
    {ExitCode::OutputFailed, "the output could not be written, as on a full disk; the cache has no room"},
};

} // namespace

std::span<const ExitCodeRow> exitCodes() { return kExitCodes; }

} // namespace HBX::tool
