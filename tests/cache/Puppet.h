#pragma once

#include <functional>
#include <unordered_map>
#include <vector>

#include <sys/types.h>

struct user_regs_struct;

namespace HBX::test {

/// A forked process that performs stages and stops before each of them, so that this process decides when one
/// begins, and how far it gets. It shares nothing with this process but files.
class Puppet {
public:
    using Stage = std::function<void()>;

    /// To be made before this process starts threads or opens caches that the stages are not to inherit.
    explicit Puppet(const std::vector<Stage>& stages);
    ~Puppet();
    Puppet(const Puppet&) = delete;
    Puppet& operator=(const Puppet&) = delete;

    /// Whether the system lets processes be run instruction by instruction.
    static bool canStep();

    /// Performs the whole next stage. @return whether it came to its end.
    bool run();
    /// Performs one instruction of the next stage. @return false when the stage has ended, or the process.
    bool step();
    /// Where the process stands: the instruction that comes next, and how often it came to it in this stage.
    struct Place {
        unsigned long long address = 0;
        unsigned arrivals = 0;
        bool isRepetition = false; ///< In the midst of an instruction that repeats itself.
    };
    Place place() const { return place_; }
    /// Performs the next stage up to a place where an earlier process came to by steps.
    /// @return false when it did not come there.
    bool runTo(const Place& place);
    void kill();

private:
    bool waitForStop();
    bool resume(bool oneInstruction) const;
    void notePlace(unsigned long long address);
    void hastenFill(user_regs_struct& registers);

    pid_t pid_;
    int signal_ = 0; ///< That stopped it last; 0 when it has ended.
    Place place_;
    unsigned repetitions_ = 0;
    std::unordered_map<unsigned long long, unsigned> arrivals_; ///< By address.
};

} // namespace HBX::test
