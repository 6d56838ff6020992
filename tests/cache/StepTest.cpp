#include "StepWorld.h"

#include <iostream>
#include <random>

/// Whole after a kill at any instruction: operations on a small cache are run instruction by instruction, and
/// whatever they leave in the files at any moment must be repaired to the content before or after them.
namespace HBX::test {
namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr bool kIsSlow = true;
#else
constexpr bool kIsSlow = false;
#endif
/// Every so many changes of the files are checked, in every so many of the operations.
constexpr std::size_t kStride = kIsSlow ? 4 : 1;
constexpr std::size_t kOperationStride = kIsSlow ? 5 : 1;

struct Totals {
    std::size_t instructions = 0;
    std::size_t states = 0;  ///< In which the files differed from the state before.
    std::size_t checked = 0; ///< Of them, or of the kills.
    std::size_t locked = 0;  ///< Kills of a process while somebody had the lock.
    std::size_t missed = 0;  ///< Places that a process did not come to again; it was killed elsewhere.
    std::size_t wrong = 0;

    template <class Check>
    void note(const char* operation, Check check) {
        ++checked;
        try {
            check();
        } catch (const std::runtime_error& finding) {
            if (++wrong <= 3) {
                ADD_FAILURE() << operation << ", check " << checked << ": " << finding.what();
            }
        }
    }
    void expectGood(const char* kind) const {
        std::cout << "  " << kind << ": " << instructions << " instructions, " << states << " states, "
                  << checked << " checked, " << locked << " with the lock, " << missed << " missed, " << wrong
                  << " wrong\n";
        EXPECT_LE(missed, checked / 10) << kind;
        EXPECT_EQ(wrong, 0U) << kind;
    }
};

/// One operation, which is performed and cut short again and again.
class Trial {
public:
    explicit Trial(const Operation& operation)
        : operation_(operation), expected_(World::rehearse(operation)) {}

    /// Steps through the operation, then kills the performer after each change, each time in a world of its
    /// own; and if that is asked for, repairers of what it leaves half done.
    void killAfterEachChange(Totals& killed, Totals& repaired) const {
        World world(operation_, false);
        const Places changes = follow(world, world.performer(), killed);
        killAndCheck(world, world.performer(), {expected_.after, expected_.after}, killed);
        for (std::size_t i = 0; i < changes.size(); i += kStride) {
            World another(operation_, false);
            killAt(changes[i], another.performer(), killed);
            killAndCheck(another, another.performer(), expected_, killed);
        }
        if (operation_.repaired) {
            killRepairers(changes[changes.size() / 2], repaired);
        }
    }
    /// Kills the performer some microseconds after it began.
    void killAtRandom(std::size_t kills, Totals& totals) const {
        static std::mt19937 random(1);
        prctl(PR_SET_TIMERSLACK, 1); // nanoseconds; else the operation would be over at every awakening
        for (std::size_t i = 0; i < kills; ++i) {
            World world(operation_, false);
            world.performer().start();
            usleep(static_cast<useconds_t>(random() % 60));
            killAndCheck(world, world.performer(), expected_, totals);
        }
    }

private:
    using Places = std::vector<Puppet::Place>;

    /// Steps through a stage and checks a copy of the files after each change of them.
    /// @return where the process stood then.
    Places follow(World& world, Puppet& process, Totals& totals) const {
        Places changes;
        for (; process.step(); ++totals.instructions) {
            if (!world.hasChanged()) {
                continue;
            }
            if (!process.place().isRepetition) {
                changes.push_back(process.place());
            }
            if (++totals.states % kStride == 0) {
                totals.note(operation_.name, [&] { world.checkCopy(expected_); });
            }
        }
        return changes;
    }
    static void killAt(const Puppet::Place& place, Puppet& process, Totals& totals) {
        totals.missed += process.runTo(place) ? 0 : 1;
        process.end();
    }
    /// Kills a process where it is now, and lets the bystander go on.
    void killAndCheck(World& world, Puppet& process, const Expected& expected, Totals& totals) const {
        process.end();
        world.hasChanged();
        totals.locked += world.isLocked() ? 1 : 0;
        totals.note(operation_.name, [&] { world.checkBystander(expected); });
    }
    /// Kills the performer in one place, steps through the repair of that; then kills repairers, too.
    void killRepairers(const Puppet::Place& place, Totals& totals) const {
        World world(operation_, true);
        killAt(place, world.performer(), totals);
        const Places changes = follow(world, world.repairer(), totals);
        killAndCheck(world, world.repairer(), expected_, totals);
        for (std::size_t i = 0; i < changes.size(); i += kStride) {
            World another(operation_, true);
            killAt(place, another.performer(), totals);
            killAt(changes[i], another.repairer(), totals);
            killAndCheck(another, another.repairer(), expected_, totals);
        }
    }

    const Operation& operation_;
    const Expected expected_;
};

/// Killed at any instruction, the repair of some half-done operations, too; and at random moments, a few
/// where stepping is possible, many where it is not.
TEST(StepTest, KilledAtAnyInstructionOfAnOperationOrItsRepair) {
    keepFilesInMemory(); // every state becomes a file
    constexpr std::size_t kFew = kIsSlow ? 1 : 10;
    const bool steps = Puppet::canStep();
    if (!steps) {
        std::cout << "  SAMPLED: the system refuses to step through processes; they are killed at random\n";
    } else if (kIsSlow) {
        std::cout << "  SAMPLED: instrumented code takes many instructions, so only every "
                  << kOperationStride << "th operation and every " << kStride << "th state are checked\n";
    }
    Totals killed, repaired, random;
    for (std::size_t i = 0; i < stepOperations().size(); ++i) {
        const Trial trial(stepOperations()[i]);
        if (steps && i % kOperationStride == 0) {
            trial.killAfterEachChange(killed, repaired);
        }
        trial.killAtRandom(steps ? kFew : 10 * kFew, random);
    }
    killed.expectGood("killed");
    repaired.expectGood("repaired");
    random.expectGood("killed at random");
    EXPECT_TRUE(steps ? killed.locked > 0 && repaired.locked > 0 : random.locked > 0);
}

} // namespace
} // namespace HBX::test
