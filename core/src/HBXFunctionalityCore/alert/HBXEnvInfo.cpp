#include <HBXFunctionalityCore/alert/HBXEnvInfo.h>

#include <HBXFunctionalityCore/environment/HBXEnvCache.h>

namespace HBX {

namespace {

std::string titleOf(const HBXEID& eid) {
    const boost::intrusive_ptr<HBXEnvCache> cache = presentEnvCache();
    const boost::shared_ptr<HBXEnv> env = cache ? cache->getEnvCopy(eid) : nullptr;
    return env ? env->getTitle() : eid.toString();
}

} // namespace

HBXEnvInfo::HBXEnvInfo(const HBXEID& eid) : HBXInfo("env", "%title%", true) {
    setParameter({"title", titleOf(eid), false});
}

} // namespace HBX
