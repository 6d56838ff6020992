#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>

#include <vector>

#include <HBXFunctionalityCore/configuration/internal/ConfigurationWalk.h>
#include <HBXMessage/HBXDerivedParsers.h>

namespace HBX {

using internal::kBuiltinRealm;
using internal::kRealm;
using internal::kRealms;
using internal::kSecurity;
using internal::seekSection;

int HBXConfiguration::getBuiltinRealmID(HBXGUID& id) const {
    const HBXMessageIterator* it = content_.iterator();
    return seekSection(it, kSecurity) && it->getObject(id, kBuiltinRealm) == 0 ? 0 : -1;
}

boost::shared_ptr<HBXRealm> HBXConfiguration::getBuiltinRealm() const {
    using RealmList = HBXReaderDerivedList<int, HBXRealm, HBXRealm>;
    HBXGUID id;
    std::vector<boost::shared_ptr<HBXRealm>> realms;
    if (getBuiltinRealmID(id) != 0 ||
        HBXReaderIDT(RealmList(kRealm, 0), kRealms, 1)(*content_.iterator(), realms) != 0) {
        return nullptr;
    }
    for (const boost::shared_ptr<HBXRealm>& realm : realms) {
        if (realm->id == id) {
            return realm;
        }
    }
    return nullptr;
}

} // namespace HBX
