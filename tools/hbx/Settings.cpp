#include "Settings.h"

#include <memory>

#include "Failure.h"

namespace HBX::tool {

namespace {

constexpr int kTop = 1307;
constexpr int kWrapper = 1021;
constexpr int kSectionLevel = 1;

using PathCursor = std::unique_ptr<HBXConfigurationIterator>;

/// Walks the tree and keeps what lies at or below one path.
class Collector {
public:
    explicit Collector(const std::string& path) : path_(path), below_(path == "/" ? path : path + '/') {}

    /// The cursor stands on the element of this path and level.
    void visit(const HBXMessageIterator& it, const std::string& path, int level) {
        const bool hasWrapper = level == kSectionLevel && it.seek(kWrapper) == 0;
        const bool isLeaf = it.firstChild() != 0;
        if (level != kSectionLevel || hasWrapper) {
            for (bool more = !isLeaf; more; more = it.nextSibling() == 0) {
                if (const std::string name = it.curName(); !name.empty()) {
                    visit(it, std::string(path).append("/").append(name), level + 1);
                }
            }
        }
        if (!isLeaf) {
            it.seekUp();
        }
        if (hasWrapper) {
            it.seekUp();
        }
        keep(it, path, isLeaf && level > kSectionLevel);
    }

    std::vector<Setting> settings;

private:
    void keep(const HBXMessageIterator& it, const std::string& path, bool isSetting) {
        std::string value;
        const bool hasValue = it.getValue(value, 0) == 0;
        if ((hasValue || isSetting) && (path == path_ || path.starts_with(below_))) {
            settings.push_back({path, hasValue ? std::optional(value) : std::nullopt});
        }
    }

    const std::string& path_;
    std::string below_;
};

} // namespace

std::vector<Setting> listSettings(const HBXConfiguration& configuration, const std::string& path) {
    const std::unique_ptr<const HBXMessageIterator> it(configuration.getMessage()->newIterator());
    Collector collector(path);
    if (it->seek(kTop) == 0) {
        collector.visit(*it, "", 0);
    }
    return std::move(collector.settings);
}

bool hasPath(const HBXConfiguration& configuration, const std::string& path) {
    return PathCursor(configuration.getIterator())->seekPresence(path) == 0;
}

std::optional<std::string> readSetting(const HBXConfiguration& configuration, const std::string& path) {
    std::string value;
    return PathCursor(configuration.getIterator())->getValue(value, path) == 0 ? std::optional(value)
                                                                               : std::nullopt;
}

void writeSetting(const HBXConfiguration& configuration, const std::string& path, const std::string& value) {
    if (PathCursor(configuration.getIterator())->putValue(value, path) != 0) {
        throw Failure(ExitCode::InvalidInput, path + ": no setting can be there");
    }
}

void demandAbsolute(const std::string& path) {
    if (!path.starts_with('/')) {
        throw Failure(ExitCode::Usage, "PATH begins with \"/\"");
    }
}

} // namespace HBX::tool
