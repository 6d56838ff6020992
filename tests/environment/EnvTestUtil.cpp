#include "EnvTestUtil.h"

namespace HBX::test {
namespace {

const Core& reachRecord(const HBXEnv& env);
boost::shared_ptr<HBXEnv> reachFactory(const Core& core);

/// An explicit instantiation may name private members.
template <auto GetCoreBasic, auto CreateEnv>
struct AsTheCache {
    friend const Core& reachRecord(const HBXEnv& env) { return (env.*GetCoreBasic)(); }
    friend boost::shared_ptr<HBXEnv> reachFactory(const Core& core) {
        return (HBXEnvFactory::getInstance().*CreateEnv)(core);
    }
};

using CreateEnvOver = boost::shared_ptr<HBXEnv> (HBXEnvFactory::*)(const Core&) const;
template struct AsTheCache<&HBXEnv::getCoreBasic, static_cast<CreateEnvOver>(&HBXEnvFactory::createEnv)>;

} // namespace

const Core& recordOf(const HBXEnv& env) { return reachRecord(env); }

boost::shared_ptr<HBXEnv> envOver(const Core& core) { return reachFactory(core); }

} // namespace HBX::test
