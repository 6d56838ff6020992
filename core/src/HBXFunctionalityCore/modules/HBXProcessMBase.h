#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/identity/HBXEID.h>

namespace HBX {

/// The agent's module for processes.
class HBX_EXPORT HBXProcessMBase {
public:
    virtual ~HBXProcessMBase();
};

/// A process.
struct HBX_EXPORT HBXProcessInfo {
    int pid = 0;
    HBXOptionalProperty<int> parentPid;
    std::string name;
    HBXOptionalProperty<std::string> command; ///< with its arguments
    HBXOptionalProperty<std::string> user;
    HBXOptionalProperty<std::string> state;    ///< as the system shows it, such as "S"
    HBXOptionalProperty<std::int64_t> memory;  ///< resident, bytes
    HBXOptionalProperty<std::int64_t> cpuTime; ///< seconds of processor time so far
    HBXOptionalProperty<std::int64_t> started;
    HBXOptionalProperty<HBXEID> eid; ///< where it runs; unset: the host

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXProcessInfo>;
    using Writer = HBXTableWriter<HBXProcessInfo>;
};

/// The processes of an environment at one moment.
struct HBX_EXPORT HBXProcessList {
    HBXEID eid;
    HBXOptionalProperty<std::int64_t> time;
    std::vector<HBXProcessInfo> processes;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXProcessList>;
    using Writer = HBXTableWriter<HBXProcessList>;
};

/// A program to be run.
struct HBX_EXPORT HBXProcessMExecParams {
    std::string command;                        ///< its file
    std::vector<std::string> arguments;         ///< without the program itself
    std::vector<std::string> environment;       ///< "NAME=value"
    HBXOptionalProperty<std::string> directory; ///< where it begins
    HBXOptionalProperty<std::string> user;      ///< as whom
    HBXOptionalProperty<std::string> input;     ///< what it reads
    HBXOptionalProperty<int> timeout;           ///< seconds until it is ended

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXProcessMExecParams>;
    using Writer = HBXTableWriter<HBXProcessMExecParams>;
};

/// How a program ended.
struct HBX_EXPORT HBXProcessMExecOutput {
    int exitCode = 0;
    HBXOptionalProperty<std::string> output;
    HBXOptionalProperty<std::string> errors; ///< its error output
    HBXOptionalProperty<bool> timedOut;      ///< it was ended

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXProcessMExecOutput>;
    using Writer = HBXTableWriter<HBXProcessMExecOutput>;
};

} // namespace HBX
