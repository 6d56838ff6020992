#include "StepWorld.h"

#include "CacheFileAudit.h"

#include <HBXCommon/HBXLog.h>

#include <sys/stat.h>
#include <unistd.h>

namespace HBX::test {

namespace {

using internal::Sidecar;
using internal::SidecarHead;

/// The parts of the lock file that a handful of processes use.
std::vector<WatchedFile::Range> rangesOfLockFile() {
    constexpr std::size_t kFew = 8;
    return {{0, offsetof(Sidecar, attachments) + kFew * sizeof(internal::SidecarAttachment)},
            {offsetof(Sidecar, pins), kFew * sizeof(internal::SidecarPin)}};
}

/// A kill leaves nothing that is worth a line in the log: what is logged meanwhile is a finding.
class QuietLog {
public:
    QuietLog() {
        setLogSink([this](const HBXLogLine& line) { finding_ = std::string("logged: ").append(line.text); });
    }
    ~QuietLog() { setLogSink({}); }
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;
    const Finding& finding() const { return finding_; }

private:
    Finding finding_;
};

/// Goes through everything in the files. Only this process may stand in the tables.
Finding audit(const std::string& name) {
    if (Finding finding = auditFile(name, TestCache::kFormat); !finding.empty()) {
        return finding;
    }
    const std::string lockFile = readFile(name + ".lock");
    const auto& tables = *reinterpret_cast<const Sidecar*>(lockFile.data());
    if (tables.head.fileSize != std::filesystem::file_size(name)) {
        return "the noted size is not the file's";
    }
    for (const internal::SidecarAttachment& process : tables.attachments) {
        if (process.inUse != 0 && process.pid != static_cast<std::uint32_t>(getpid())) {
            return "a dead process is still attached";
        }
    }
    for (const internal::SidecarPin& pin : tables.pins) {
        if (!pin.holder.isFree() && tables.attachments[pin.holder.attachment() - 1].inUse == 0) {
            return "a dead process still holds a snapshot";
        }
    }
    return {};
}

Finding checkStatus(Actor& actor, const Content& content) {
    const HBXCacheStatus status = actor.askStatus();
    std::size_t lists = 0;
    for (const HBXCacheHolder& holder : status.holders) {
        lists += holder.lists;
    }
    if (status.entries != content.size()) {
        return "the status counts other entries";
    }
    if (lists != actor.currentLists() || status.processes.size() != 1) {
        return "the status names other lists or processes";
    }
    if (lists == 0 &&
        (status.snapshots != 1 || status.allocated + kCacheHeapBegin != status.achievableSize)) {
        return "more space is in use than the entries need";
    }
    return {};
}

Finding checkContent(Actor& actor, const Expected& expected) {
    const std::optional<Content> content = actor.read();
    if (!content.has_value()) {
        return "a value is not whole";
    }
    if (*content != expected.before && *content != expected.after) {
        return "neither the content before nor the one after";
    }
    return checkStatus(actor, *content);
}

/// The first finding of several checks, each of which runs only when the ones before found nothing.
template <class... Checks>
Finding firstOf(Checks... checks) {
    Finding finding;
    (void)((finding = checks(), finding.empty()) && ...);
    return finding;
}

} // namespace

// --- arranging ---

World::World(const Operation& operation, bool withRepairer)
    : data_(name_, {{0, std::string::npos}}), lock_(name_ + ".lock", rangesOfLockFile()), bystander_(name_) {
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
    doomed.kill();
    hasChanged();
}

Expected World::rehearse(const Operation& operation) {
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

// --- watching ---

bool World::hasChanged() {
    const bool data = data_.hasChanged();
    return lock_.hasChanged() || data;
}

bool World::isLocked() const {
    pthread_mutex_t mutex{};
    if (lock_.bytes().size() >= sizeof(Sidecar)) {
        std::memcpy(&mutex, lock_.bytes().data() + offsetof(Sidecar, mutex), sizeof mutex);
    }
    return mutex.__data.__lock != 0;
}

// --- checking ---

/// The copy of the lock file names the copy of the data file if the original names the original.
void World::writeCopy() const {
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

Finding World::checkCopy(const Expected& expected) const {
    const QuietLog log;
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
    const auto auditFiles = [&] { return audit(actor.name()); };
    const auto use = [&] {
        Finding finding = checkContent(actor, expected);
        actor.close();
        return finding;
    };
    return firstOf(checkTwice, auditFiles, use, auditFiles, [&] { return log.finding(); });
}

/// As if another process had been killed with the lock.
void World::demandRebuild() const {
    std::fstream file(name_ + ".lock", std::ios::in | std::ios::out | std::ios::binary);
    const std::uint32_t yes = 1;
    file.seekp(offsetof(SidecarHead, rebuild));
    file.write(reinterpret_cast<const char*>(&yes), sizeof yes);
}

Finding World::checkBystander(const Expected& expected) {
    const QuietLog log;
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
        demandRebuild();
        bystander_.askStatus();
        return !repaired || readFile(name_) == once ? "" : "a second repair changes the file";
    };
    const auto goOn = [&] {
        const Expected present{*bystander_.read(), {}};
        bystander_.put(99, 1, 100);
        bystander_.remove(99);
        while (!bystander_.lists().empty()) {
            bystander_.closeList();
        }
        return checkContent(bystander_, {present.before, present.before});
    };
    const auto auditFiles = [&] { return audit(name_); };
    return firstOf(
        checkTwice, auditFiles, [&] { return checkContent(bystander_, expected); }, checkLists, auditFiles,
        goOn, auditFiles, [&] { return log.finding(); });
}

} // namespace HBX::test
