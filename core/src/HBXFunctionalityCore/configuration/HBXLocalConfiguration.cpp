#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>

#include <HBXCommon/HBXLock.h>

namespace HBX {

namespace {

/// What belongs to the process; all of it under the lock.
struct Local {
    HBXLock lock;
    boost::intrusive_ptr<HBXMessage> message;
    HBXEID id; ///< as read from the message, null until that has worked
};

Local& local() {
    static Local state;
    return state;
}

} // namespace

HBXConfiguration HBXConfiguration::getLocalConfig() {
    Local& state = local();
    const HBXLockGuard guard(state.lock);
    return HBXConfiguration(state.message.get());
}

int HBXConfiguration::setLocalConfig(HBXMessage* message) {
    boost::intrusive_ptr<HBXMessage> next = message != nullptr ? adoptMessage(message->copy(false)) : nullptr;
    Local& state = local();
    const HBXLockGuard guard(state.lock);
    state.message.swap(next);
    state.id = HBXEID();
    return 0;
}

HBXEID HBXConfiguration::getLocalEID() {
    Local& state = local();
    const HBXLockGuard guard(state.lock);
    if (!state.id.isValid()) {
        HBXConfiguration(state.message.get()).getEID(state.id);
    }
    return state.id;
}

} // namespace HBX
