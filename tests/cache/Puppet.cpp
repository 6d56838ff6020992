#include "Puppet.h"

#include <csignal>
#include <cstring>
#include <string>

#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace HBX::test {

namespace {

[[noreturn]] void perform(const std::vector<Puppet::Stage>& stages) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    for (const Puppet::Stage& stage : stages) {
        raise(SIGSTOP);
        stage();
    }
    raise(SIGSTOP);
    _exit(0);
}

} // namespace

bool Puppet::canStep() {
    const pid_t pid = fork();
    if (pid == 0) {
        _exit(ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0 ? 0 : 1);
    }
    int status = 0;
    return waitpid(pid, &status, 0) == pid && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

Puppet::Puppet(const std::vector<Stage>& stages) : pid_(fork()) {
    if (pid_ == 0) {
        perform(stages);
    }
    waitForStop();
}

Puppet::~Puppet() { kill(); }

bool Puppet::run() { return resume(false) && waitForStop() && signal_ == SIGSTOP; }

bool Puppet::step() {
    if (!resume(true) || !waitForStop() || signal_ != SIGTRAP) {
        return false;
    }
    user_regs_struct registers{};
    ptrace(PTRACE_GETREGS, pid_, nullptr, &registers);
    notePlace(registers.rip);
    hastenFill(registers);
    return true;
}

void Puppet::notePlace(unsigned long long address) {
    repetitions_ = address == place_.address ? repetitions_ + 1 : 0;
    place_ = {address, repetitions_ > 0 ? place_.arrivals : ++arrivals_[address], repetitions_ > 0};
}

/// A repeated store stops after each byte. The tables of a lock file have more than a hundred thousand; what
/// a few processes use of them lies at the beginning.
void Puppet::hastenFill(user_regs_struct& registers) {
    constexpr unsigned kWatched = 256;
    constexpr long kRepeatedStore = 0xAAF3;
    if (repetitions_ < kWatched ||
        (ptrace(PTRACE_PEEKTEXT, pid_, registers.rip, nullptr) & 0xFFFF) != kRepeatedStore) {
        return;
    }
    std::string bytes(registers.rcx, static_cast<char>(registers.rax));
    const iovec from{bytes.data(), bytes.size()};
    iovec to{nullptr, bytes.size()};
    std::memcpy(&to.iov_base, &registers.rdi, sizeof to.iov_base);
    if (process_vm_writev(pid_, &from, 1, &to, 1, 0) == static_cast<ssize_t>(bytes.size())) {
        registers.rdi += registers.rcx;
        registers.rcx = 0;
        ptrace(PTRACE_SETREGS, pid_, nullptr, &registers);
    }
}

bool Puppet::resume(bool oneInstruction) const {
    return ptrace(oneInstruction ? PTRACE_SINGLESTEP : PTRACE_CONT, pid_, nullptr, nullptr) == 0;
}

/// A breakpoint stands in the way, and is lifted for one instruction whenever the process comes to it.
bool Puppet::runTo(const Place& place) {
    constexpr long kBreakpoint = 0xCC;
    const long code = ptrace(PTRACE_PEEKTEXT, pid_, place.address, nullptr);
    for (unsigned arrivals = 0;;) {
        ptrace(PTRACE_POKETEXT, pid_, place.address, (code & ~0xFFL) | kBreakpoint);
        if (!resume(false) || !waitForStop() || signal_ != SIGTRAP) {
            return false;
        }
        ptrace(PTRACE_POKETEXT, pid_, place.address, code);
        user_regs_struct registers{};
        ptrace(PTRACE_GETREGS, pid_, nullptr, &registers);
        registers.rip = place.address;
        ptrace(PTRACE_SETREGS, pid_, nullptr, &registers);
        if (++arrivals == place.arrivals) {
            return true;
        }
        if (!step()) {
            return false;
        }
    }
}

bool Puppet::waitForStop() {
    int status = 0;
    const bool stopped = waitpid(pid_, &status, WUNTRACED) == pid_ && WIFSTOPPED(status);
    signal_ = stopped ? WSTOPSIG(status) : 0;
    return stopped;
}

void Puppet::kill() {
    if (pid_ > 0) {
        ::kill(pid_, SIGKILL);
        int status = 0;
        while (waitpid(pid_, &status, 0) == pid_ && WIFSTOPPED(status)) {
        }
        pid_ = 0;
    }
}

} // namespace HBX::test
