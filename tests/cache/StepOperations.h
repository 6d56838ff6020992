#pragma once

#include <vector>

#include "StepActor.h"

namespace HBX::test {

using Script = void (*)(Actor&);

/// An operation that is to be cut short, and the world in which it runs. Scripts may be null.
struct Operation {
    const char* name;
    Script before;    ///< By a bystander, which stays.
    Script doomed;    ///< Then by a process that is killed just before the operation.
    Script prepare;   ///< Then by the process that will perform the operation.
    Script meanwhile; ///< Then by the bystander.
    Script operation;
    bool repaired = false; ///< The repair of what it leaves is to be stepped through, too.
};

namespace scripts {

constexpr std::size_t kSize = 20;

inline void open(Actor& actor) { actor.open(); }
inline void close(Actor& actor) { actor.close(); }
inline void store(Actor& actor) { actor.store(); }
inline void remove(Actor& actor) { actor.remove(40); }
inline void openList(Actor& actor) { actor.openList(); }
inline void closeList(Actor& actor) { actor.closeList(); }
inline void askStatus(Actor& actor) { actor.askStatus(); }
inline void removeFile(Actor& actor) { actor.removeFile(true); }
inline void removeRefusedFile(Actor& actor) { actor.removeFile(false); }
inline void abandonFile(Actor& actor) { actor.abandonFile(); }

template <Script... Parts>
void inTurn(Actor& actor) {
    (Parts(actor), ...);
}

/// Keys 10 to 120 in one sorted run.
inline void fillRun(Actor& actor) {
    actor.open();
    for (std::uint64_t number = 10; number <= 120; number += 10) {
        actor.put(number, 1, kSize + number % 3 * 16);
    }
}
inline void addTail(Actor& actor) {
    actor.put(55, 1, kSize);
    actor.put(35, 1, kSize);
}
/// The next insertion finds no room in the snapshot, whose entries are in disorder.
inline void fillSnapshot(Actor& actor) {
    actor.open();
    for (std::uint64_t number = 200; number > 136; --number) {
        actor.put(number, 1, kSize);
    }
}
inline void changeTwo(Actor& actor) {
    actor.put(20, 2, kSize);
    actor.remove(30);
}
constexpr Script fillRunAndTail = inTurn<fillRun, addTail>;
constexpr Script fillAndPin = inTurn<fillRunAndTail, openList>;
constexpr Script fillAndRest = inTurn<fillRun, openList, closeList>;
constexpr Script fillAndLeave = inTurn<fillRunAndTail, close>;
constexpr Script openAndPin = inTurn<open, openList>;
constexpr Script openAndRest = inTurn<openAndPin, closeList>;
constexpr Script openTwoAndRestOne = inTurn<openAndPin, openList, closeList>;
/// The first list holds what nobody else holds any more.
constexpr Script holdOldSnapshot = inTurn<openAndPin, changeTwo>;
constexpr Script fillAndRemoveFile = inTurn<fillRun, removeFile>;
constexpr Script fillAndAbandonFile = inTurn<fillRun, abandonFile>;

template <std::uint64_t Number, std::size_t Size = kSize>
void make(Actor& actor) {
    actor.open();
    actor.make(Number, 2, Size);
}
constexpr Script makeNew = make<45>;
constexpr Script makeLast = make<130>;
constexpr Script makeReplacement = make<40, 2 * kSize>;
constexpr Script makeForTail = make<35>;
constexpr Script makeRemoved = inTurn<open, remove, make<40>>;
constexpr Script makeLarge = make<45, 1500>;
/// The mapping cannot take in what the file grows by.
inline void makeLargeInSmallMapping(Actor& actor) {
    TestManager::wishes.reservation = 4096;
    makeLarge(actor);
}

} // namespace scripts

inline const std::vector<Operation>& stepOperations() {
    using namespace scripts;
    static const std::vector<Operation> operations = {
        {"insert into the tail", fillRun, nullptr, makeNew, nullptr, store},
        {"insert behind the run", fillRun, nullptr, makeLast, nullptr, store},
        {"insert of a removed key", fillRun, nullptr, makeRemoved, nullptr, store},
        {"insert that merges", fillSnapshot, nullptr, makeNew, nullptr, store},
        {"replace in the run", fillRun, nullptr, makeReplacement, nullptr, store, true},
        {"replace in the tail", fillRunAndTail, nullptr, makeForTail, nullptr, store},
        {"remove", fillRun, nullptr, open, nullptr, remove},
        {"insert while others read", fillAndPin, nullptr, makeNew, nullptr, store, true},
        {"replace while others read", fillAndPin, nullptr, makeReplacement, nullptr, store},
        {"remove while others read", fillAndPin, nullptr, open, nullptr, remove},
        {"insert that grows the file", fillRun, nullptr, makeLarge, nullptr, store},
        {"the same, beyond the mapping", fillRun, nullptr, makeLargeInSmallMapping, nullptr, store, true},
        {"open a list, no tail", fillRun, nullptr, open, nullptr, openList},
        {"open a list, with a tail", fillRunAndTail, nullptr, open, nullptr, openList},
        {"bring a list to rest", fillAndPin, nullptr, openAndPin, nullptr, closeList},
        {"take up a list at rest", fillRun, nullptr, openAndRest, nullptr, openList, true},
        {"open when the rest was ended", fillRun, nullptr, openAndRest, changeTwo, openList},
        {"close beside a list at rest", fillAndPin, nullptr, openTwoAndRestOne, nullptr, closeList},
        {"replace beside a list at rest", fillAndRest, nullptr, makeReplacement, nullptr, store, true},
        {"insert beside the dead one's rest", fillRun, openAndRest, makeNew, nullptr, store},
        {"close the last list of the past", fillRun, nullptr, holdOldSnapshot, nullptr, closeList, true},
        {"reclaim a dead reader's past", fillRun, openAndPin, open, changeTwo, askStatus},
        {"insert beside a dead reader", fillRun, openAndPin, makeNew, nullptr, store, true},
        {"attach to an open file", fillAndPin, nullptr, nullptr, nullptr, open},
        {"detach", fillAndPin, nullptr, open, nullptr, close},
        {"build beside others", fillAndRemoveFile, nullptr, nullptr, nullptr, open, true},
        {"remove the file", fillAndPin, nullptr, nullptr, nullptr, removeFile},
        {"remove an abandoned file", fillAndAbandonFile, nullptr, nullptr, nullptr, removeRefusedFile},
        {"build alone", nullptr, nullptr, nullptr, nullptr, open},
        {"open alone", fillAndLeave, nullptr, nullptr, nullptr, open},
    };
    return operations;
}

} // namespace HBX::test
