#include "StepWorld.h"

#include <chrono>
#include <iomanip>
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

    void add(const Totals& more, const char* operation, const char* kind) {
        more.print(operation, kind);
        *this += more;
    }
    Totals& operator+=(const Totals& more) {
        instructions += more.instructions;
        states += more.states;
        checked += more.checked;
        locked += more.locked;
        missed += more.missed;
        wrong += more.wrong;
        return *this;
    }
    void note(const Finding& finding, const char* operation) {
        ++checked;
        if (!finding.empty() && ++wrong <= 3) {
            ADD_FAILURE() << operation << ", check " << checked << ": " << finding;
        }
    }
    void print(const char* operation, const char* kind) const {
        std::cout << "  " << std::left << std::setw(32) << operation << std::setw(9) << kind << std::right
                  << std::setw(7) << instructions << " instructions," << std::setw(5) << states << " states,"
                  << std::setw(5) << checked << " checked," << std::setw(5) << locked << " with the lock,"
                  << std::setw(3) << missed << " missed," << std::setw(4) << wrong << " wrong" << std::endl;
    }
};

/// What a process went through.
struct Course {
    Totals totals;
    std::vector<Puppet::Place> changes; ///< Where it stood after each change of the files.
};

/// Steps through a stage and checks a copy of the files after every `stride`th change; 0 for none.
Course follow(World& world, Puppet& process, const Expected& expected, std::size_t stride, const char* name) {
    Course course;
    Totals& totals = course.totals;
    for (; process.step(); ++totals.instructions) {
        if (!world.hasChanged()) {
            continue;
        }
        if (!process.place().isRepetition) {
            course.changes.push_back(process.place());
        }
        if (++totals.states; stride != 0 && totals.states % stride == 0) {
            totals.note(world.checkCopy(expected), name);
        }
    }
    return course;
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
Totals killAfterEach(const std::vector<Puppet::Place>& changes, const Operation& operation,
                     const Expected& expected) {
    Totals totals;
    for (std::size_t i = 0; i < changes.size(); i += kStride) {
        World world(operation, false);
        totals.missed += world.performer().runTo(changes[i]) ? 0 : 1;
        killAndCheck(world, world.performer(), operation, expected, totals);
    }
    return totals;
}

/// Kills the performer in one place, steps through the repair of that; then kills repairers, too.
Totals repair(const Puppet::Place& place, const Operation& operation, const Expected& expected) {
    World world(operation, true);
    world.performer().runTo(place);
    world.performer().kill();
    const Course course = follow(world, world.repairer(), expected, kStride, operation.name);
    Totals totals = course.totals;
    killAndCheck(world, world.repairer(), operation, expected, totals);
    for (std::size_t i = 0; i < course.changes.size(); i += kStride) {
        World another(operation, true);
        totals.missed += another.performer().runTo(place) ? 0 : 1;
        another.performer().kill();
        totals.missed += another.repairer().runTo(course.changes[i]) ? 0 : 1;
        killAndCheck(another, another.repairer(), operation, expected, totals);
    }
    return totals;
}

void spin(std::chrono::microseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) {
    }
}

/// Where stepping is refused: kills soon after the performer changed something for the first time.
Totals killAtRandom(const Operation& operation, const Expected& expected, std::size_t kills) {
    static std::mt19937 random(1);
    Totals totals;
    for (std::size_t i = 0; i < kills; ++i) {
        World world(operation, false);
        world.performer().start();
        for (int patience = 1000; patience > 0 && !world.hasChanged(); --patience) {
            spin(std::chrono::microseconds(0));
        }
        spin(std::chrono::microseconds(random() % 5));
        killAndCheck(world, world.performer(), operation, expected, totals);
    }
    return totals;
}

class StepTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!Puppet::canStep()) {
            std::cout
                << "  SAMPLED: the system refuses to step through processes, so they are killed at random\n";
        } else if (kIsSlow) {
            std::cout << "  SAMPLED: instrumented code takes many instructions, so only every "
                      << kOperationStride << "th operation and every " << kStride << "th state are checked\n";
        }
    }
    /// Those that are stepped through here.
    static std::vector<Operation> operations() {
        std::vector<Operation> chosen;
        for (std::size_t i = 0; i < stepOperations().size(); i += kOperationStride) {
            chosen.push_back(stepOperations()[i]);
        }
        return chosen;
    }
};

TEST_F(StepTest, KilledAtAnyInstruction) {
    Totals stepped;
    Totals killed;
    for (const Operation& operation : operations()) {
        const Expected expected = World::rehearse(operation);
        if (!Puppet::canStep()) {
            killed.add(killAtRandom(operation, expected, kIsSlow ? 10 : 100), operation.name, "killed");
            continue;
        }
        World world(operation, false);
        Course course = follow(world, world.performer(), expected, kStride, operation.name);
        killAndCheck(world, world.performer(), operation, {expected.after, expected.after}, course.totals);
        stepped.add(course.totals, operation.name, "stepped");
        killed.add(killAfterEach(course.changes, operation, expected), operation.name, "killed");
    }
    stepped.print("all", "stepped");
    killed.print("all", "killed");
    EXPECT_GT(killed.locked, 0U);
    EXPECT_LE(killed.missed, killed.checked / 10);
    EXPECT_EQ(stepped.wrong + killed.wrong, 0U);
}

/// The repair of a half-done operation is cut short itself.
TEST_F(StepTest, KilledAtAnyInstructionOfARepair) {
    if (!Puppet::canStep()) {
        GTEST_SKIP() << "Repairs are too short to be hit at random";
    }
    Totals all;
    for (const Operation& operation : operations()) {
        if (!operation.repaired) {
            continue;
        }
        const Expected expected = World::rehearse(operation);
        World world(operation, false);
        const Course course = follow(world, world.performer(), expected, 0, operation.name);
        const Puppet::Place middle = course.changes[course.changes.size() / 2];
        all.add(repair(middle, operation, expected), operation.name, "repaired");
    }
    all.print("all", "repaired");
    EXPECT_LE(all.missed, all.checked / 10);
    EXPECT_EQ(all.wrong, 0U);
}

} // namespace
} // namespace HBX::test
