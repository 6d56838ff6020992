#include <HBXFunctionalityCore/directory/HBXDirRealm.h>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXStringUtil.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr int kAuthName = 1630;
constexpr int kServer = 1687;
constexpr int kPort = 1704;
constexpr int kBaseDn = 1958;
constexpr int kPrincipalsDn = 1959;

constexpr HBXRow kDirRealm[] = {
    optional<&HBXDirRealm::authName>(kAuthName),
    member<&HBXDirRealm::server>(kServer),
    member<&HBXDirRealm::port>(kPort),
    member<&HBXDirRealm::baseDn>(kBaseDn),
    member<&HBXDirRealm::principalsDn>(kPrincipalsDn),
};

int refuse(const char* reason) {
    setErrorMessage(reason);
    return -1;
}

} // namespace

constinit const HBXRecordTable HBXDirRealm::table =
    recordTable<HBXDirRealm, HBXRealm>("HBXDirRealm", 407, 5073, kDirRealm);

bool HBXDirRealm::isValid() const {
    if (server.empty() || port == 0 || principalsDn.size() < baseDn.size()) {
        return false;
    }
    const std::string_view end = std::string_view(principalsDn).substr(principalsDn.size() - baseDn.size());
    return compareNoCase(end, baseDn) == 0;
}

int HBXDirRealm::set(const HBXRealm& other) {
    const auto* realm = dynamic_cast<const HBXDirRealm*>(&other);
    if (realm == nullptr) {
        return refuse("Invalid realm type");
    }
    if (!realm->isValid()) {
        return refuse("Invalid realm parameters");
    }
    if (const int result = HBXRealm::set(other); result != 0) {
        return result;
    }
    server = realm->server;
    baseDn = realm->baseDn;
    principalsDn = realm->principalsDn;
    port = realm->port;
    authName = realm->authName;
    if (!password.isSet()) {
        password = realm->password;
    }
    return 0;
}

void HBXDirRealm::completeSample() {
    type = kType;
    server += '.';
    port |= 1;
    principalsDn += baseDn;
}

int HBXDirRealm::Reader::operator()(const HBXMessageIterator& it, HBXDirRealm& realm) const {
    HBXAuthName login; // absent: the default one
    if (HBXReaderIDT(HBXAuthName::Reader(), kAuthName, 0)(it, login) != 0) {
        return -1;
    }
    realm.authName = std::move(login);
    if (HBXRealm::Reader()(it, realm) != 0 || realm.type != kType) {
        return -1;
    }
    const bool isThere = it.getValue(realm.server, kServer) == 0 && it.getValue(realm.port, kPort) == 0 &&
                         it.getValue(realm.baseDn, kBaseDn) == 0 &&
                         it.getValue(realm.principalsDn, kPrincipalsDn) == 0;
    return isThere && realm.isValid() ? 0 : -1;
}

int HBXDirRealm::Writer::operator()(HBXMessageIterator& it, const HBXDirRealm& realm) const {
    const bool isGood = realm.isValid() && it.putObject(realm.authName, kAuthName) == 0 &&
                        HBXRealm::Writer()(it, realm) == 0 && it.putValue(realm.server, kServer) == 0 &&
                        it.putValue(realm.port, kPort) == 0 && it.putValue(realm.baseDn, kBaseDn) == 0;
    return isGood ? it.putValue(realm.principalsDn, kPrincipalsDn) : -1;
}

} // namespace HBX
