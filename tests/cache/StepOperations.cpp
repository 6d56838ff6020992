#include "StepOperations.h"

namespace HBX::test {

namespace {

constexpr std::size_t kSize = 20;

void open(Actor& actor) { actor.open(); }

/// Keys 10 to 120 in one sorted run.
void fillRun(Actor& actor) {
    actor.open();
    for (std::uint64_t number = 10; number <= 120; number += 10) {
        actor.put(number, 1, kSize + number % 3 * 16);
    }
}

void fillRunAndTail(Actor& actor) {
    fillRun(actor);
    actor.put(55, 1, kSize);
    actor.put(35, 1, kSize);
}

/// The next insertion finds no room in the snapshot, whose entries are in disorder.
void fillSnapshot(Actor& actor) {
    actor.open();
    for (std::uint64_t number = 200; number > 136; --number) {
        actor.put(number, 1, kSize);
    }
}

void fillAndPin(Actor& actor) {
    fillRunAndTail(actor);
    actor.openList();
}

void openAndPin(Actor& actor) {
    actor.open();
    actor.openList();
}

void openAndRest(Actor& actor) {
    openAndPin(actor);
    actor.closeList();
}

void fillAndRest(Actor& actor) {
    fillRun(actor);
    actor.openList();
    actor.closeList();
}

void openTwoAndRestOne(Actor& actor) {
    openAndPin(actor);
    actor.openList();
    actor.closeList();
}

void changeTwo(Actor& actor) {
    actor.put(20, 2, kSize);
    actor.remove(30);
}

/// The first list holds what nobody else holds any more.
void holdOldSnapshot(Actor& actor) {
    openAndPin(actor);
    changeTwo(actor);
}

template <std::uint64_t Number, std::size_t Size = kSize>
void make(Actor& actor) {
    actor.open();
    actor.make(Number, 2, Size);
}
constexpr Script makeNew = make<45>;
constexpr Script makeLast = make<130>;
constexpr Script makeReplacement = make<40, 2 * kSize>;
constexpr Script makeForTail = make<35>;
constexpr Script makeLarge = make<45, 1500>;

void makeRemoved(Actor& actor) {
    actor.open();
    actor.remove(20);
    actor.make(20, 2, kSize);
}
/// The mapping cannot take in what the file grows by.
void makeLargeInSmallMapping(Actor& actor) {
    TestManager::wishes.reservation = 4096;
    makeLarge(actor);
}

void fillAndLeave(Actor& actor) {
    fillRunAndTail(actor);
    actor.close();
}
void removeFileBefore(Actor& actor) {
    fillRun(actor);
    actor.removeFile(true);
}
void abandonFileBefore(Actor& actor) {
    fillRun(actor);
    actor.abandonFile();
}

void store(Actor& actor) { actor.store(); }
void remove(Actor& actor) { actor.remove(40); }
void openList(Actor& actor) { actor.openList(); }
void closeList(Actor& actor) { actor.closeList(); }
void close(Actor& actor) { actor.close(); }
void removeFile(Actor& actor) { actor.removeFile(true); }
void removeRefusedFile(Actor& actor) { actor.removeFile(false); }
void askStatus(Actor& actor) { actor.askStatus(); }

} // namespace

const std::vector<Operation>& stepOperations() {
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
        {"build beside others", removeFileBefore, nullptr, nullptr, nullptr, open, true},
        {"remove the file", fillAndPin, nullptr, nullptr, nullptr, removeFile},
        {"remove an abandoned file", abandonFileBefore, nullptr, nullptr, nullptr, removeRefusedFile},
        {"build alone", nullptr, nullptr, nullptr, nullptr, open},
        {"open alone", fillAndLeave, nullptr, nullptr, nullptr, open},
    };
    return operations;
}

} // namespace HBX::test
