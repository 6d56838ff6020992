#pragma once

#include <memory>

#include "Puppet.h"
#include "StepOperations.h"
#include "WatchedFile.h"
#include "support/CapturedLog.h"

namespace HBX::test {

/// What a cache may hold when an operation was cut short.
struct Expected {
    Content before, after;
};

/// A cache in a folder of its own with everybody who uses it: this process, the bystander; one that is about
/// to perform an operation; and one that is to repair what the first leaves. Both may be stepped and killed.
class World {
public:
    /// @param withRepairer  whether there is to be one; otherwise it is the bystander who repairs.
    World(const Operation& operation, bool withRepairer) {
        TestManager::wishes = Wishes();
        // All are forked off before anything is open here, so that they inherit nothing.
        const auto stage = [](Actor& actor, const Script& script) {
            return [&] { script ? script(actor) : void(); };
        };
        Actor actor(name_);
        Puppet doomed({stage(actor, operation.doomed)});
        performer_ = std::make_unique<Puppet>(
            std::vector<Puppet::Stage>{stage(actor, operation.prepare), stage(actor, operation.operation)});
        if (withRepairer) {
            const auto attach = [&] { access(name_.c_str(), F_OK) == 0 ? actor.open() : void(); };
            repairer_ =
                std::make_unique<Puppet>(std::vector<Puppet::Stage>{attach, [&] { actor.askStatus(); }});
        }
        stage(bystander_, operation.before)();
        demand(doomed.run() && performer_->run() && (!withRepairer || repairer_->run()), "a process failed");
        stage(bystander_, operation.meanwhile)();
        doomed.end();
        hasChanged();
    }

    /// Performs the whole operation in this process, in a folder of its own: tells what is to be expected,
    /// and lets the dynamic linker find every function that will be stepped through.
    static Expected rehearse(const Operation& operation) {
        const ScratchFolder folder;
        Expected expected;
        Actor actor(folder.path("cache"));
        for (const Script& script :
             {operation.before, operation.doomed, operation.prepare, operation.meanwhile}) {
            script ? script(actor) : void();
        }
        expected.before = actor.model;
        operation.operation(actor);
        expected.after = actor.model;
        EXPECT_EQ(actor.read(), expected.after) << operation.name;
        return expected;
    }

    Puppet& performer() { return *performer_; }
    Puppet& repairer() { return *repairer_; }

    /// Whether one of the files changed since the last call.
    bool hasChanged() {
        const bool data = data_.hasChanged();
        return lock_.hasChanged() || data;
    }
    /// Whether somebody has the lock in the state that the last call saw.
    bool isLocked() const {
        return lock_.bytes.size() >= sizeof(Sidecar) &&
               reinterpret_cast<const Sidecar*>(lock_.bytes.data())->mutex.__data.__lock != 0;
    }

    // Checks; they throw what is wrong.

    /// Copies what the last call of hasChanged saw and opens the copy, as if all processes had been killed.
    void checkCopy(const Expected& expected) const {
        CapturedLog log;
        writeCopy();
        Actor actor(folder_.path("copy"));
        const auto repair = [&] { // who opens a cache alone repairs it, whatever it looks like
            actor.open();
            actor.close();
            return contentOf(actor.name);
        };
        demand(repair() == repair(), "a second repair changes the file");
        audit(actor);
        checkContent(actor, expected);
        actor.close();
        audit(actor);
        demand(log.take().empty(), "a kill leaves nothing that is worth a line");
    }
    /// Lets the bystander go on with the real files. Only once all others are dead.
    void checkBystander(const Expected& expected) {
        CapturedLog log;
        const bool repaired = isLocked();
        bystander_.askStatus();
        const std::string once = contentOf(name_);
        writeNumberAt(name_ + ".lock", offsetof(SidecarHead, rebuild), 1); // as if one more had been killed
        bystander_.askStatus();
        demand(!repaired || contentOf(name_) == once, "a second repair changes the file");
        audit(bystander_);
        checkContent(bystander_, expected);
        for (const Actor::OpenList& held : bystander_.lists) {
            demand(readList(*held.list) == held.content,
                   "a list shows something else than when it was opened");
        }
        const Content present = *bystander_.read();
        bystander_.put(99, 1, 100);
        bystander_.remove(99);
        while (!bystander_.lists.empty()) {
            bystander_.closeList();
        }
        checkContent(bystander_, {present, present});
        audit(bystander_);
        demand(log.take().empty(), "a kill leaves nothing that is worth a line");
    }

private:
    using Sidecar = internal::Sidecar;
    using SidecarHead = internal::SidecarHead;

    static void audit(const Actor& actor) {
        const std::string finding = auditFile(actor.name, TestCache::kFormat);
        demand(finding.empty(), finding);
    }

    static void checkContent(Actor& actor, const Expected& expected) {
        const std::optional<Content> content = actor.read();
        demand(content.has_value(), "a value is not whole");
        demand(content == expected.before || content == expected.after,
               "neither the content before nor the one after");
        const HBXCacheStatus status = actor.askStatus();
        std::size_t lists = 0;
        for (const HBXCacheHolder& holder : status.holders) {
            lists += holder.lists;
        }
        demand(status.entries == content->size() && lists == actor.currentLists() &&
                   status.processes.size() == 1,
               "the status counts other entries, lists or processes");
        demand(lists != 0 ||
                   (status.snapshots == 1 && status.allocated + kCacheHeapBegin == status.achievableSize),
               "more space is in use than the entries need");
    }

    /// The copy of the lock file names the copy of the data file if the original names the original.
    void writeCopy() const {
        const std::string copy = folder_.path("copy");
        unlink(copy.c_str());
        unlink((copy + ".lock").c_str());
        if (data_.inode != 0) {
            writeFile(copy, data_.bytes);
        }
        if (lock_.inode == 0) {
            return;
        }
        std::string bytes = lock_.bytes;
        struct stat status {};
        if (bytes.size() >= sizeof(Sidecar) && stat(copy.c_str(), &status) == 0) {
            auto& head = *reinterpret_cast<SidecarHead*>(bytes.data());
            head.inode = head.inode == data_.inode ? status.st_ino : head.inode;
        }
        writeFile(copy + ".lock", bytes);
    }

    ScratchFolder folder_;
    std::string name_ = folder_.path("cache");
    WatchedFile data_{name_};
    WatchedFile lock_{name_ + ".lock"};
    Actor bystander_{name_};
    std::unique_ptr<Puppet> performer_;
    std::unique_ptr<Puppet> repairer_;
};

} // namespace HBX::test
