#pragma once

#include <functional>
#include <vector>

#include "StepActor.h"

namespace HBX::test {

/// What an actor does; empty: nothing.
using Script = std::function<void(Actor&)>;

/// An operation that is to be cut short, and the world in which it runs.
struct Operation {
    const char* name;
    Script before;    ///< By a bystander, which stays.
    Script doomed;    ///< Then by a process that is killed just before the operation.
    Script prepare;   ///< Then by the process that will perform the operation.
    Script meanwhile; ///< Then by the bystander.
    Script operation;
    bool repaired = false; ///< The repair of what it leaves is to be stepped through, too.
};

inline Script inTurn(const std::vector<Script>& parts) {
    return [parts](Actor& actor) {
        for (const Script& part : parts) {
            part(actor);
        }
    };
}

constexpr std::size_t kStepSize = 20;

/// Keys 10 to 120 in one sorted run.
inline void fillRun(Actor& actor) {
    actor.open();
    for (std::uint64_t number = 10; number <= 120; number += 10) {
        actor.put(number, 1, kStepSize + number % 3 * 16);
    }
}
inline void fillRunAndTail(Actor& actor) {
    fillRun(actor);
    actor.put(55, 1, kStepSize);
    actor.put(35, 1, kStepSize);
}
/// The next insertion finds no room in the snapshot, whose entries are in disorder.
inline void fillSnapshot(Actor& actor) {
    actor.open();
    for (std::uint64_t number = 200; number > 136; --number) {
        actor.put(number, 1, kStepSize);
    }
}
inline void changeTwo(Actor& actor) {
    actor.put(20, 2, kStepSize);
    actor.remove(30);
}
/// A value that is then to be stored.
inline Script make(std::uint64_t number, std::size_t size = kStepSize) {
    return [=](Actor& actor) {
        actor.open();
        actor.make(number, 2, size);
    };
}
/// The mapping cannot take in what the file grows by.
inline void makeLargeInSmallMapping(Actor& actor) {
    TestManager::wishes.reservation = 4096;
    make(45, 1500)(actor);
}

inline const std::vector<Operation>& stepOperations() {
    const Script open = &Actor::open, close = &Actor::close, store = &Actor::store;
    const Script openList = &Actor::openList, closeList = &Actor::closeList;
    const Script remove = [](Actor& actor) { actor.remove(40); };
    const Script removeFile = [](Actor& actor) { actor.removeFile(true); };
    const Script removeRefusedFile = [](Actor& actor) { actor.removeFile(false); };
    const Script replace = make(40, 2 * kStepSize);
    const Script fillAndPin = inTurn({fillRunAndTail, openList});
    const Script fillAndRest = inTurn({fillRun, openList, closeList});
    const Script fillAndLeave = inTurn({fillRunAndTail, close});
    const Script fillAndRemoveFile = inTurn({fillRun, removeFile});
    const Script fillAndAbandonFile = inTurn({fillRun, &Actor::abandonFile});
    const Script openAndPin = inTurn({open, openList});
    const Script openAndRest = inTurn({openAndPin, closeList});
    const Script openTwoAndRestOne = inTurn({openAndPin, openList, closeList});
    const Script holdOldSnapshot = inTurn({openAndPin, changeTwo}); // nobody else holds what its list does
    static const std::vector<Operation> operations = {
        {"insert into the tail", fillRun, {}, make(45), {}, store},
        {"insert behind the run", fillRun, {}, make(130), {}, store},
        {"insert of a removed key", fillRun, {}, inTurn({open, remove, make(40)}), {}, store},
        {"insert that merges", fillSnapshot, {}, make(45), {}, store},
        {"replace in the run", fillRun, {}, replace, {}, store, true},
        {"replace in the tail", fillRunAndTail, {}, make(35), {}, store},
        {"remove", fillRun, {}, open, {}, remove},
        {"insert while others read", fillAndPin, {}, make(45), {}, store, true},
        {"replace while others read", fillAndPin, {}, replace, {}, store},
        {"remove while others read", fillAndPin, {}, open, {}, remove},
        {"insert that grows the file", fillRun, {}, make(45, 1500), {}, store},
        {"the same, beyond the mapping", fillRun, {}, makeLargeInSmallMapping, {}, store, true},
        {"open a list, no tail", fillRun, {}, open, {}, openList},
        {"open a list, with a tail", fillRunAndTail, {}, open, {}, openList},
        {"bring a list to rest", fillAndPin, {}, openAndPin, {}, closeList},
        {"take up a list at rest", fillRun, {}, openAndRest, {}, openList, true},
        {"open when the rest was ended", fillRun, {}, openAndRest, changeTwo, openList},
        {"close beside a list at rest", fillAndPin, {}, openTwoAndRestOne, {}, closeList},
        {"replace beside a list at rest", fillAndRest, {}, replace, {}, store, true},
        {"insert beside the dead one's rest", fillRun, openAndRest, make(45), {}, store},
        {"close the last list of the past", fillRun, {}, holdOldSnapshot, {}, closeList, true},
        {"reclaim a dead reader's past", fillRun, openAndPin, open, changeTwo, &Actor::askStatus},
        {"insert beside a dead reader", fillRun, openAndPin, make(45), {}, store, true},
        {"attach to an open file", fillAndPin, {}, {}, {}, open},
        {"detach", fillAndPin, {}, open, {}, close},
        {"build beside others", fillAndRemoveFile, {}, {}, {}, open, true},
        {"remove the file", fillAndPin, {}, {}, {}, removeFile},
        {"remove an abandoned file", fillAndAbandonFile, {}, {}, {}, removeRefusedFile},
        {"build alone", {}, {}, {}, {}, open},
        {"open alone", fillAndLeave, {}, {}, {}, open},
    };
    return operations;
}

} // namespace HBX::test
