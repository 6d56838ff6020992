#include "StepWorld.h"

#include <iostream>

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

    void note(const Finding& finding, const char* operation) {
        ++checked;
        if (!finding.empty() && ++wrong <= 3) {
            ADD_FAILURE() << operation << ", check " << checked << ": " << finding;
        }
    }
    void print(const char* kind) const {
        std::cout << "  " << kind << ": " << instructions << " instructions, " << states << " states, "
                  << checked << " checked, " << locked << " with the lock, " << missed << " missed, " << wrong
                  << " wrong\n";
    }
};

using Places = std::vector<Puppet::Place>;

/// Steps through a stage and checks a copy of the files after every `stride`th change; 0 for none.
/// @return where the process stood after each change of the files.
Places follow(World& world, Puppet& process, const Expected& expected, std::size_t stride, const char* name,
              Totals& totals) {
    Places changes;
    for (; process.step(); ++totals.instructions) {
        if (!world.hasChanged()) {
            continue;
        }
        if (!process.place().isRepetition) {
            changes.push_back(process.place());
        }
        if (++totals.states; stride != 0 && totals.states % stride == 0) {
            totals.note(world.checkCopy(expected), name);
        }
    }
    return changes;
}

/// Kills a process where it is now, and lets the bystander go on.
void killAndCheck(World& world, Puppet& process, const Operation& operation, const Expected& expected,
                  Totals& totals) {
    process.kill();
    world.hasChanged();
    totals.locked += world.isLocked() ? 1 : 0;
    totals.note(world.checkBystander(expected), operation.name);
}

/// Kills the performer after each change, each time in a world of its own.
void killAfterEach(const Places& changes, const Operation& operation, const Expected& expected,
                   Totals& totals) {
    for (std::size_t i = 0; i < changes.size(); i += kStride) {
        World world(operation, false);
        totals.missed += world.performer().runTo(changes[i]) ? 0 : 1;
        killAndCheck(world, world.performer(), operation, expected, totals);
    }
}

/// Kills the performer in one place, steps through the repair of that; then kills repairers, too.
void repair(const Puppet::Place& place, const Operation& operation, const Expected& expected,
            Totals& totals) {
    World world(operation, true);
    world.performer().runTo(place);
    world.performer().kill();
    const Places changes = follow(world, world.repairer(), expected, kStride, operation.name, totals);
    killAndCheck(world, world.repairer(), operation, expected, totals);
    for (std::size_t i = 0; i < changes.size(); i += kStride) {
        World another(operation, true);
        totals.missed += another.performer().runTo(place) ? 0 : 1;
        another.performer().kill();
        totals.missed += another.repairer().runTo(changes[i]) ? 0 : 1;
        killAndCheck(another, another.repairer(), operation, expected, totals);
    }
}

class StepTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { keepFilesInMemory(); } // every state becomes a file
    void SetUp() override {
        if (!Puppet::canStep()) {
            GTEST_SKIP() << "The system refuses to step through processes";
        }
        if (kIsSlow) {
            std::cout << "  SAMPLED: instrumented code takes many instructions, so only every "
                      << kOperationStride << "th operation and every " << kStride << "th state are checked\n";
        }
    }
};

TEST_F(StepTest, KilledAtAnyInstruction) {
    Totals stepped;
    Totals killed;
    for (std::size_t i = 0; i < stepOperations().size(); i += kOperationStride) {
        const Operation& operation = stepOperations()[i];
        const Expected expected = World::rehearse(operation);
        World world(operation, false);
        const Places changes = follow(world, world.performer(), expected, kStride, operation.name, stepped);
        killAndCheck(world, world.performer(), operation, {expected.after, expected.after}, stepped);
        killAfterEach(changes, operation, expected, killed);
    }
    stepped.print("stepped");
    killed.print("killed");
    EXPECT_GT(killed.locked, 0U);
    EXPECT_LE(killed.missed, killed.checked / 10);
    EXPECT_EQ(stepped.wrong + killed.wrong, 0U);
}

/// The repair of a half-done operation is cut short itself.
TEST_F(StepTest, KilledAtAnyInstructionOfARepair) {
    Totals all;
    for (std::size_t i = 0; i < stepOperations().size(); i += kOperationStride) {
        const Operation& operation = stepOperations()[i];
        if (!operation.repaired) {
            continue;
        }
        const Expected expected = World::rehearse(operation);
        World world(operation, false);
        Totals unchecked;
        const Places changes = follow(world, world.performer(), expected, 0, operation.name, unchecked);
        repair(changes[changes.size() / 2], operation, expected, all);
    }
    all.print("repaired");
    EXPECT_LE(all.missed, all.checked / 10);
    EXPECT_EQ(all.wrong, 0U);
}

} // namespace
} // namespace HBX::test
