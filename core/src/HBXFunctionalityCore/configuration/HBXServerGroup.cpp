#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>

#include <HBXFunctionalityCore/configuration/internal/ConfigurationWalk.h>

namespace HBX {

using internal::kClients;
using internal::kEntry;
using internal::kIdentifier;
using internal::kMaster;
using internal::kServerGroup;
using internal::putSection;
using internal::seekSection;

bool HBXConfiguration::isInServerGroup() const {
    const HBXMessageIterator* it = content_.iterator();
    return seekSection(it, kServerGroup) && it->seek(kMaster) == 0 && it->seekPresence(kIdentifier) == 0;
}

int HBXConfiguration::getMaster(HBXEID& id) const {
    const HBXMessageIterator* it = content_.iterator();
    return seekSection(it, kServerGroup) && it->seek(kMaster) == 0 && it->getObject(id, kIdentifier) == 0
               ? 0
               : -1;
}

int HBXConfiguration::setMaster(const HBXEID& id) {
    HBXMessageIterator* it = content_.iterator();
    if (!putSection(it, kServerGroup) || it->putChild(kMaster) != 0) {
        return -1;
    }
    it->deleteChild(kIdentifier);
    return it->putObject(id, kIdentifier);
}

int HBXConfiguration::delMaster() {
    HBXMessageIterator* it = content_.iterator();
    return seekSection(it, kServerGroup) ? it->deleteChild(kMaster) : -1;
}

bool HBXConfiguration::isMaster() const {
    HBXEID own;
    HBXEID master;
    return !isInServerGroup() || (getEID(own) == 0 && getMaster(master) == 0 && own == master);
}

bool HBXConfiguration::isSlave() const {
    HBXEID own;
    HBXEID master;
    return getEID(own) == 0 && getMaster(master) == 0 && own != master;
}

int HBXConfiguration::setMasterness() {
    HBXMessageIterator* it = content_.iterator();
    return putSection(it, kServerGroup) && it->putChild(kClients) == 0 ? 0 : -1;
}

int HBXConfiguration::unsetMasterness() {
    HBXMessageIterator* it = content_.iterator();
    if (!seekSection(it, kServerGroup) || it->seek(kClients) != 0) {
        return 0;
    }
    return it->seekPresence(kEntry) == 0 ? -1 : it->deleteFromChild();
}

int HBXConfiguration::addClientEnv(const HBXEID& id) {
    HBXMessageIterator* it = content_.iterator();
    if (setMasterness() != 0) {
        return -1;
    }
    it->newChild(kEntry);
    it->putObject(id, kIdentifier);
    return 0;
}

int HBXConfiguration::delClientEnv(const HBXEID& id) {
    HBXMessageIterator* it = content_.iterator();
    return seekSection(it, kServerGroup) && it->seek(kClients) == 0 ? internal::removeEntry(*it, id) : -1;
}

void HBXConfiguration::getGroupSlaves(std::set<HBXEID, HBXEnvIDComparator>& ids) const {
    const HBXMessageIterator* it = content_.iterator();
    if (seekSection(it, kServerGroup) && it->seek(kClients) == 0) {
        internal::visitEntries(*it, [&](const HBXEID& id) { ids.insert(id); });
    }
}

} // namespace HBX
