#include <HBXFunctionalityCore/modules/HBXAuthMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kUserCredentials[] = {
    member<&HBXUserCredentials::user>(1630),
    member<&HBXUserCredentials::password>(3040),
    member<&HBXUserCredentials::sessionId>(3041),
};

constexpr HBXRow kProgCredentials[] = {
    member<&HBXProgCredentials::program>(3042),
    member<&HBXProgCredentials::version>(1223),
    member<&HBXProgCredentials::key>(3043),
    memberAs<&HBXProgCredentials::issued>(HBXKind::Time, 1004),
};

} // namespace

constinit const HBXRecordTable HBXUserCredentials::table =
    recordTable<HBXUserCredentials>("HBXUserCredentials", 402, 5016, kUserCredentials);
constinit const HBXRecordTable HBXProgCredentials::table =
    recordTable<HBXProgCredentials>("HBXProgCredentials", 402, 5017, kProgCredentials);

HBXAuthMBase::~HBXAuthMBase() = default;

} // namespace HBX
