#pragma once

#include <memory>

#include "Puppet.h"
#include "StepActor.h"
#include "StepOperations.h"
#include "WatchedFile.h"

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
    bool hasChanged();
    /// Whether somebody has the lock in the state that the last call saw.
    bool isLocked() const;

    /// Copies what the last call of hasChanged saw and opens the copy, as if all processes had been killed.
    Finding checkCopy(const Expected& expected) const;
    /// Lets the bystander go on with the real files. Only once all others are dead.
    Finding checkBystander(const Expected& expected);

private:
    void writeCopy() const;
    void demandRebuild() const;

    ScratchFolder folder_;
    std::string name_ = folder_.path("cache");
    WatchedFile data_;
    WatchedFile lock_;
    Actor bystander_;
    std::unique_ptr<Puppet> performer_;
    std::unique_ptr<Puppet> repairer_;
};

} // namespace HBX::test
