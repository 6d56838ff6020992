#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>

#include <HBXFunctionalityCore/configuration/internal/ConfigurationWalk.h>

namespace HBX {

using internal::kAgent;
using internal::kConnectionInfo;
using internal::kEntry;
using internal::kIdentifier;
using internal::kLegacyConnection;
using internal::kMappingTable;
using internal::seekEntry;
using internal::seekSection;

namespace {

bool seekTable(const HBXMessageIterator* it) {
    return seekSection(it, kAgent) && it->seek(kMappingTable) == 0;
}

} // namespace

int HBXConfiguration::getMappingTable(std::map<HBXEID, HBXConnectionInfo>& mappings) const {
    const HBXMessageIterator* it = content_.iterator();
    if (!seekTable(it)) {
        return -1;
    }
    internal::visitEntries(*it, [&](const HBXEID& id) {
        HBXConnectionInfo info;
        if (it->getObject(info, kConnectionInfo) == 0) {
            mappings.emplace(id, std::move(info));
        }
    });
    return 0;
}

int HBXConfiguration::findMapping(const HBXEID& id, HBXConnectionInfo& info) const {
    const HBXMessageIterator* it = content_.iterator();
    HBXConnectionInfo found;
    if (!seekTable(it) || !seekEntry(*it, id) || it->getObject(found, kConnectionInfo) != 0) {
        return -1;
    }
    info = std::move(found);
    return 0;
}

int HBXConfiguration::setMapping(const HBXEID& id, const HBXConnectionInfo& info) {
    HBXMessageIterator* it = content_.iterator();
    if (!seekSection(it, kAgent) || it->putChild(kMappingTable) != 0) {
        return -1;
    }
    if (seekEntry(*it, id)) {
        it->deleteChild(kLegacyConnection); // the older form must not contradict the new one
    } else if (it->newChild(kEntry) != 0 || it->putObject(id, kIdentifier) != 0) {
        return -1;
    }
    return it->putObject(info, kConnectionInfo) == 0 ? 0 : -1;
}

int HBXConfiguration::removeMapping(const HBXEID& id) {
    HBXMessageIterator* it = content_.iterator();
    return seekTable(it) ? internal::removeEntry(*it, id) : -1;
}

} // namespace HBX
