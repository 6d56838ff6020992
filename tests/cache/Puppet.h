#pragma once

#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/uio.h>
#include <sys/user.h>

#include "support/ChildProcess.h"

namespace HBX::test {

/// A forked process that performs stages and stops before each of them, so that this process decides when one
/// begins, and how far it gets. It shares nothing with this process but files.
class Puppet {
public:
    using Stage = std::function<void()>;

    /// To be made before this process starts threads or opens caches that the stages are not to inherit.
    explicit Puppet(const std::vector<Stage>& stages)
        : process_(std::in_place, [&] { return perform(stages); }), pid_(process_->pid()) {
        process_->waitUntilStopped();
    }

    /// Whether the system lets processes be run instruction by instruction. Otherwise all else still works.
    static bool canStep() {
        return Puppet({[] {}}).step();
    }

    /// Begins the next stage without waiting for its end.
    bool start() const {
        return ptrace(PTRACE_CONT, pid_, nullptr, nullptr) == 0 || kill(pid_, SIGCONT) == 0;
    }
    /// Performs the whole next stage. @return whether it came to its end.
    bool run() { return start() && process_->waitUntilStopped() == SIGSTOP; }
    /// Performs one instruction of the next stage. @return false when the stage has ended, or the process.
    bool step() {
        if (ptrace(PTRACE_SINGLESTEP, pid_, nullptr, nullptr) != 0 ||
            process_->waitUntilStopped() != SIGTRAP) {
            return false;
        }
        user_regs_struct registers{};
        ptrace(PTRACE_GETREGS, pid_, nullptr, &registers);
        notePlace(registers.rip);
        hastenFill(registers);
        return true;
    }
    /// Where the process stands: the instruction that comes next, and how often it came to it in this stage.
    struct Place {
        unsigned long long address = 0;
        unsigned arrivals = 0;
        bool isRepetition = false; ///< In the midst of an instruction that repeats itself.
    };
    Place place() const { return place_; }
    /// Performs the next stage up to a place where an earlier process came to by steps.
    /// @return false when it did not come there.
    bool runTo(const Place& place) {
        constexpr long kBreakpoint = 0xCC;
        const long code = ptrace(PTRACE_PEEKTEXT, pid_, place.address, nullptr);
        unsigned arrivals = 0;
        do { // a breakpoint stands in the way, and is lifted for one instruction at each arrival
            ptrace(PTRACE_POKETEXT, pid_, place.address, (code & ~0xFFL) | kBreakpoint);
            if (!start() || process_->waitUntilStopped() != SIGTRAP) {
                return false;
            }
            ptrace(PTRACE_POKETEXT, pid_, place.address, code);
            user_regs_struct registers{};
            ptrace(PTRACE_GETREGS, pid_, nullptr, &registers);
            registers.rip = place.address;
            ptrace(PTRACE_SETREGS, pid_, nullptr, &registers);
        } while (++arrivals < place.arrivals && step());
        return arrivals == place.arrivals;
    }
    void end() { process_.reset(); }

private:
    /// What a stage throws ends the process.
    static int perform(const std::vector<Stage>& stages) noexcept {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr); // refused: it is stopped by signals alone
        for (const Stage& stage : stages) {
            raise(SIGSTOP);
            stage();
        }
        return raise(SIGSTOP);
    }
    void notePlace(unsigned long long address) {
        repetitions_ = address == place_.address ? repetitions_ + 1 : 0;
        place_ = {address, repetitions_ > 0 ? place_.arrivals : ++arrivals_[address], repetitions_ > 0};
    }
    /// A repeated store stops after each byte. The tables of a lock file have more than a hundred thousand;
    /// what a few processes use of them lies at the beginning.
    void hastenFill(user_regs_struct& registers) {
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

    std::optional<ChildProcess> process_;
    pid_t pid_;
    Place place_;
    unsigned repetitions_ = 0;
    std::unordered_map<unsigned long long, unsigned> arrivals_; ///< By address.
};

} // namespace HBX::test
