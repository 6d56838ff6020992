#include <HBXCore/HBXCacheCheck.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <map>
#include <new>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/internal/HBXDescriptor.h>
#include <HBXCore/HBXMemoryMappedFile.h>
#include <HBXCore/internal/BootId.h>
#include <HBXCore/internal/CacheAudit.h>
#include <HBXCore/internal/CacheHeader.h>
#include <HBXCore/internal/CacheImage.h>
#include <HBXCore/internal/CacheSizes.h>
#include <HBXCore/internal/PlainFile.h>

namespace HBX {

using internal::CacheDamage;
using internal::CacheImage;
using internal::Sidecar;
using internal::SidecarPin;
using Severity = HBXCacheFinding::Severity;

namespace {

/// A creator that was killed early leaves a file of the first size without a single mark in it.
bool isUntouched(const char* bytes, std::uint64_t length, std::uint64_t fileSize) {
    return fileSize <= internal::initialFileSize(HBXMemoryMappedFile::getMemoryPageSize()) &&
           fileSize <= length && std::all_of(bytes, bytes + fileSize, [](char byte) { return byte == 0; });
}

/// @param bytes  the beginning of the file, at least a header long.
HBXCacheFileKind kindOf(const char* bytes, std::uint64_t length, std::uint64_t fileSize,
                        const HBXCacheFormat& format) {
    constexpr int kEnough = 3;
    if (isUntouched(bytes, length, fileSize)) {
        return HBXCacheFileKind::Empty;
    }
    return internal::countKnownFields(bytes, format) >= kEnough ? HBXCacheFileKind::Cache
                                                                : HBXCacheFileKind::Other;
}

/// The examination of one image. Each step adds what it finds.
class Examination {
public:
    Examination(CacheImage& image, const HBXCacheFormat& format, HBXCacheFindings& findings)
        : image_(image), format_(format), findings_(findings) {}

    void run() {
        findings_.kind = kindOf(image_.bytes.data(), image_.bytes.size(), image_.fileSize, format_);
        findings_.inUse = image_.inUse;
        findings_.fileSize = image_.fileSize;
        if (findings_.kind == HBXCacheFileKind::Other) {
            add(Severity::Damage, kCacheConstantsOffset, "this is no header of a cache file");
        }
        if (findings_.kind != HBXCacheFileKind::Cache) {
            return;
        }
        if (internal::isNewCache(image_.bytes.data(), format_)) {
            add(Severity::Repairable, kCacheValidOffset, "the file was not built to its end");
            return;
        }
        checkHeader();
        checkLockFile();
        checkContent();
    }

private:
    void add(Severity severity, std::uint64_t offset, std::string what, bool inLockFile = false) {
        findings_.list.push_back({severity, inLockFile, offset, std::move(what)});
    }

    void checkHeader() {
        const HBXCacheConstants found = internal::readConstants(image_.bytes.data());
        const struct {
            std::uint64_t offset;
            const char* name;
            std::uint32_t found;
            std::uint32_t expected;
        } fields[] = {
            {49, "signature", found.signature, HBX_CACHE_FILE_SIGNATURE},
            {53, "header size", found.headerSize, kCacheHeaderSize},
            {57, "key size", found.keySize, format_.keySize},
            {61, "format constant", found.format, kCacheFormatConstant},
            {65, "value size", found.valueSize, format_.valueSize},
        };
        for (const auto& field : fields) {
            if (field.found != field.expected) {
                add(Severity::Damage, field.offset,
                    std::string("the ") + field.name + " is " + std::to_string(field.found) + " instead of " +
                        std::to_string(field.expected));
            }
        }
        if (found.valid == 0) {
            add(Severity::Damage, kCacheValidOffset, "the file is marked as abandoned");
        }
        if (image_.fileSize < kCacheMinimumSize) {
            add(Severity::Repairable, image_.fileSize, "the file is shorter than any cache");
        }
    }

    void checkLockFile() {
        if (image_.lockFile == nullptr) {
            return;
        }
        const internal::SidecarHead& head = image_.lockFile->head;
        if (head.magic != 0 && head.magic != internal::SidecarHead::kMagic) {
            add(Severity::Damage, 0, "this is no lock file, and no process will use it as one", true);
        } else if (image_.isPaired() && head.clean == 0 && !internal::isThisBoot(head)) {
            add(Severity::Damage, offsetof(internal::SidecarHead, clean),
                "the system went down while the cache file was not yet on the disk", true);
        } else if (image_.isPaired() && head.rebuild != 0) {
            add(Severity::Repairable, offsetof(internal::SidecarHead, rebuild), "a change was cut short",
                true);
        }
    }

    bool isHeld(const SidecarPin& pin) const {
        const internal::SidecarHolder holder = pin.holder;
        return holder.attachment() != 0 && holder.attachment() <= Sidecar::kAttachments &&
               holder.references() > 0 && pin.generation == image_.lockFile->head.generation;
    }

    /// Snapshots that must be readable, with their holders. What the dead held is only waiting to be freed.
    std::vector<internal::CacheRoot> findRoots() {
        std::map<std::uint64_t, std::uint32_t> counts{{internal::headOf(image_.bytes.data()).snapshot, 1}};
        if (image_.isPaired()) {
            const std::size_t rows = std::min<std::size_t>(image_.lockFile->head.pinRows, Sidecar::kPins);
            for (std::size_t row = 0; row < rows; ++row) {
                const SidecarPin& pin = image_.lockFile->pins[row];
                if (!isHeld(pin)) {
                    continue;
                }
                if (image_.living[pin.holder.attachment() - 1]) {
                    counts[pin.snapshot] += pin.holder.references();
                } else {
                    add(Severity::Repairable, offsetof(Sidecar, pins) + row * sizeof(SidecarPin),
                        "lists of a process that has ended are noted", true);
                }
            }
        }
        std::vector<internal::CacheRoot> roots;
        roots.reserve(counts.size());
        for (const auto& [offset, references] : counts) {
            roots.push_back({offset, references});
        }
        return roots;
    }

    void checkContent() {
        const std::uint64_t current = internal::headOf(image_.bytes.data()).snapshot;
        if (current == 0) {
            add(Severity::Damage, offsetof(HBXCacheHead, snapshot), "there is no current snapshot");
            return;
        }
        const std::vector<internal::CacheRoot> roots = findRoots();
        Severity severity = Severity::Damage;
        try {
            const internal::CacheView view = image_.view(format_);
            const internal::CacheAudit audit(image_.bytes.data(), view, roots);
            findings_.snapshots = roots.size();
            findings_.entries = countEntries(view.snapshotAt(current));
            findings_.values = audit.valueCount();
            findings_.valueBytes = audit.valueBytes();
            severity = Severity::Repairable;
            audit.check();
        } catch (const CacheDamage& damage) {
            add(severity, damage.offset, damage.what);
        }
    }

    static std::uint64_t countEntries(HBXSnapshotHead& snapshot) {
        const HBXCacheEntry* entries = internal::CacheView::entriesOf(snapshot);
        return static_cast<std::uint64_t>(
            std::count_if(entries, entries + snapshot.count(),
                          [](const HBXCacheEntry& entry) { return entry.value != 0; }));
    }

    CacheImage& image_;
    const HBXCacheFormat& format_;
    HBXCacheFindings& findings_;
};

} // namespace

bool HBXCacheFindings::isDamaged() const {
    return std::any_of(list.begin(), list.end(),
                       [](const HBXCacheFinding& finding) { return finding.severity == Severity::Damage; });
}

int recogniseCacheFile(const std::string& path, const HBXCacheFormat& format, HBXCacheFileKind& kind) {
    std::uint64_t size = 0;
    const HBXDescriptor file(internal::openForReading(path, size));
    if (!file.isOpen()) {
        if (errno != ENOENT) {
            return -1;
        }
        kind = HBXCacheFileKind::Missing;
        return 0;
    }
    std::array<char, 65536> bytes{}; // the largest first size, with the largest pages
    const std::size_t length = std::min<std::uint64_t>(size, bytes.size());
    if (internal::readAt(file.get(), bytes.data(), length, 0) != 0) {
        return failWithErrno("read", path);
    }
    kind = kindOf(bytes.data(), bytes.size(), size, format);
    return 0;
}

int checkCacheFile(const std::string& path, const HBXCacheFormat& format, HBXCacheFindings& findings) {
    findings = HBXCacheFindings();
    try {
        CacheImage image;
        if (internal::readCacheImage(path, image) != 0) {
            return -1;
        }
        Examination(image, format, findings).run();
        return 0;
    } catch (const std::bad_alloc&) {
        errno = ENOMEM;
        return failWithErrno("examine", path);
    }
}

} // namespace HBX
