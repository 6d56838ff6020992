#pragma once

#include <memory>

#include "Puppet.h"
#include "StepOperations.h"
#include "WatchedFile.h"
#include "support/CapturedLog.h"

namespace HBX::test {

/// What is wrong, in a few words; empty when nothing is.
using Finding = std::string;

/// What a cache may hold when an operation was cut short.
struct Expected {
    Content before;
    Content after;
};

/// A cache in a folder of its own with everybody who uses it: this process, the bystander; one that is about
/// to perform an operation; and one that is to repair what the first leaves. Both may be stepped and killed.
class World {
public:
    /// @param withRepairer  whether there is to be one; otherwise it is the bystander who repairs.
    World(const Operation& operation, bool withRepairer);

    /// Performs the whole operation in this process, in a folder of its own: tells what is to be expected,
    /// and lets the dynamic linker find every function that will be stepped through.
    static Expected rehearse(const Operation& operation);

    Puppet& performer() { return *performer_; }
    Puppet& repairer() { return *repairer_; }

    /// Whether one of the files changed since the last call.
    bool hasChanged() {
        const bool data = data_.hasChanged();
        return lock_.hasChanged() || data;
    }
    /// Whether somebody has the lock in the state that the last call saw.
    bool isLocked() const {
        pthread_mutex_t mutex{};
        if (lock_.bytes().size() >= sizeof(Sidecar)) {
            std::memcpy(&mutex, lock_.bytes().data() + offsetof(Sidecar, mutex), sizeof mutex);
        }
        return mutex.__data.__lock != 0;
    }

    /// Copies what the last call of hasChanged saw and opens the copy, as if all processes had been killed.
    Finding checkCopy(const Expected& expected) const;
    /// Lets the bystander go on with the real files. Only once all others are dead.
    Finding checkBystander(const Expected& expected);

private:
    using Sidecar = internal::Sidecar;
    using SidecarHead = internal::SidecarHead;

    static Finding audit(const Actor& actor) { return auditFile(actor.name(), TestCache::kFormat); }
    static Finding checkContent(Actor& actor, const Expected& expected);
    void writeCopy() const;

    ScratchFolder folder_;
    std::string name_ = folder_.path("cache");
    WatchedFile data_{name_};
    WatchedFile lock_{name_ + ".lock"};
    Actor bystander_{name_};
    std::unique_ptr<Puppet> performer_;
    std::unique_ptr<Puppet> repairer_;
};

// --- arranging ---

inline World::World(const Operation& operation, bool withRepairer) {
    TestManager::wishes = Wishes();
    // All are forked off before anything is open here, so that they inherit nothing.
    const auto stage = [](Actor& actor, Script script) {
        return [&actor, script] { script != nullptr ? script(actor) : void(); };
    };
    Actor actor(name_);
    Puppet doomed({stage(actor, operation.doomed)});
    performer_ = std::make_unique<Puppet>(
        std::vector<Puppet::Stage>{stage(actor, operation.prepare), stage(actor, operation.operation)});
    if (withRepairer) {
        const auto attach = [&] { access(name_.c_str(), F_OK) == 0 ? actor.open() : void(); };
        repairer_ = std::make_unique<Puppet>(std::vector<Puppet::Stage>{attach, [&] { actor.askStatus(); }});
    }
    stage(bystander_, operation.before)();
    if (!doomed.run() || !performer_->run() || (repairer_ != nullptr && !repairer_->run())) {
        std::abort();
    }
    stage(bystander_, operation.meanwhile)();
    doomed.end();
    hasChanged();
}

inline Expected World::rehearse(const Operation& operation) {
    const ScratchFolder folder;
    Expected expected;
    Actor actor(folder.path("cache"));
    for (const Script script : {operation.before, operation.doomed, operation.prepare, operation.meanwhile}) {
        script != nullptr ? script(actor) : void();
    }
    expected.before = actor.model();
    operation.operation(actor);
    expected.after = actor.model();
    EXPECT_EQ(actor.read(), expected.after) << operation.name;
    return expected;
}

// --- checking ---

/// The first finding of several checks, each of which runs only when the ones before found nothing.
template <class... Checks>
Finding firstOf(Checks... checks) {
    Finding finding;
    (void)((finding = checks(), finding.empty()) && ...);
    return finding;
}

inline Finding World::checkContent(Actor& actor, const Expected& expected) {
    const std::optional<Content> content = actor.read();
    if (!content.has_value()) {
        return "a value is not whole";
    }
    if (*content != expected.before && *content != expected.after) {
        return "neither the content before nor the one after";
    }
    const HBXCacheStatus status = actor.askStatus();
    std::size_t lists = 0;
    for (const HBXCacheHolder& holder : status.holders) {
        lists += holder.lists;
    }
    if (status.entries != content->size() || lists != actor.currentLists() || status.processes.size() != 1) {
        return "the status counts other entries, lists or processes";
    }
    if (lists == 0 &&
        (status.snapshots != 1 || status.allocated + kCacheHeapBegin != status.achievableSize)) {
        return "more space is in use than the entries need";
    }
    return {};
}

/// The copy of the lock file names the copy of the data file if the original names the original.
inline void World::writeCopy() const {
    const std::string copy = folder_.path("copy");
    unlink(copy.c_str());
    unlink((copy + ".lock").c_str());
    if (data_.exists()) {
        writeFile(copy, data_.bytes());
    }
    if (!lock_.exists()) {
        return;
    }
    std::string bytes = lock_.bytes();
    struct stat status {};
    if (bytes.size() >= sizeof(Sidecar) && stat(copy.c_str(), &status) == 0) {
        auto& head = *reinterpret_cast<SidecarHead*>(bytes.data());
        head.inode = head.inode == data_.inode() ? status.st_ino : head.inode;
    }
    writeFile(copy + ".lock", bytes);
}

inline Finding World::checkCopy(const Expected& expected) const {
    CapturedLog log; // a kill leaves nothing that is worth a line
    writeCopy();
    Actor actor(folder_.path("copy"));
    const auto repair = [&] { // who opens a cache alone repairs it, whatever it looks like
        actor.open();
        actor.close();
        return readFile(actor.name());
    };
    const auto checkTwice = [&]() -> Finding {
        return repair() == repair() ? "" : "a second repair changes the file";
    };
    const auto auditFiles = [&] { return audit(actor); };
    const auto use = [&] {
        Finding finding = checkContent(actor, expected);
        actor.close();
        return finding;
    };
    return firstOf(checkTwice, auditFiles, use, auditFiles, [&] { return log.take(); });
}

inline Finding World::checkBystander(const Expected& expected) {
    CapturedLog log;
    const auto checkLists = [&]() -> Finding {
        for (const Actor::OpenList& held : bystander_.lists()) {
            if (readList(*held.list) != held.content) {
                return "a list shows something else than when it was opened";
            }
        }
        return {};
    };
    const auto checkTwice = [&]() -> Finding {
        const bool repaired = isLocked();
        bystander_.askStatus();
        const std::string once = readFile(name_);
        writeNumberAt(name_ + ".lock", offsetof(SidecarHead, rebuild), 1); // as if one more had been killed
        bystander_.askStatus();
        return !repaired || readFile(name_) == once ? "" : "a second repair changes the file";
    };
    const auto goOn = [&] {
        const Content present = *bystander_.read();
        bystander_.put(99, 1, 100);
        bystander_.remove(99);
        while (!bystander_.lists().empty()) {
            bystander_.closeList();
        }
        return checkContent(bystander_, {present, present});
    };
    const auto auditFiles = [&] { return audit(bystander_); };
    return firstOf(
        checkTwice, auditFiles, [&] { return checkContent(bystander_, expected); }, checkLists, auditFiles,
        goOn, auditFiles, [&] { return log.take(); });
}

} // namespace HBX::test
