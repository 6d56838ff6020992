#include "Request.h"

#include <algorithm>

#include "operators/AlertOperator.h"
#include "operators/BackupOperator.h"
#include "operators/ConfigurationOperator.h"
#include "operators/EnvironmentOperator.h"
#include "operators/FileOperator.h"
#include "operators/SchedulerOperator.h"
#include "operators/SecurityOperator.h"
#include "operators/TimeOperator.h"
#include "operators/VocabularyOperator.h"

namespace HBX::tool {

namespace {

constexpr int kData = 1307;
constexpr int kCode = 3007;
constexpr int kMessage = 3030;
constexpr int kError = 3404;

/// Every operator module; a new one is one more line.
constexpr const Operator* kOperators[] = {
    &kAlertOperator,     &kBackupOperator,   &kConfigurationOperator, &kEnvironmentOperator, &kFileOperator,
    &kSchedulerOperator, &kSecurityOperator, &kTimeOperator,          &kVocabularyOperator,
};

void copyEnvelope(const HBXMessage& request, HBXMessage& reply) {
    std::string text;
    if (request.getID(text) == 0) {
        reply.setID(text, true);
    }
    if (request.getSession(text) == 0) {
        reply.setSession(text);
    }
    if (request.getSessionID(text) == 0) {
        reply.setSessionID(text);
    }
    if (request.getOrigin(text) == 0) {
        reply.setOrigin(text);
    }
}

/// Steps down to the only child.
bool seekOnlyChild(const HBXMessageIterator& it) {
    if (it.firstChild() != 0) {
        return false;
    }
    if (it.nextSibling() != 0) {
        return true;
    }
    it.seekUp();
    return false;
}

/// The road of one request: each step names what it stands on, then hands it on.
class Dispatch {
public:
    Dispatch(const HBXMessageIterator& request, HBXMessageIterator& reply)
        : request_(request), reply_(reply) {}

    Outcome run() {
        if (request_.seek(kData) != 0) {
            return RequestFailure{RequestError::NoRequest, "there is no element \"data\""};
        }
        if (!descend()) {
            return RequestFailure{RequestError::NoRequest, "one operator is expected here"};
        }
        const int id = request_.curID();
        const auto found = std::find_if(std::begin(kOperators), std::end(kOperators),
                                        [id](const Operator* o) { return o->id == id; });
        if (found == std::end(kOperators)) {
            return RequestFailure{RequestError::UnknownOperator, "there is no such operator"};
        }
        return runVerb(**found);
    }

    std::string place = "/data";

private:
    Outcome runVerb(const Operator& module) {
        if (!descend()) {
            return RequestFailure{RequestError::NoRequest, "one verb is expected here"};
        }
        const int id = request_.curID();
        const auto verb = std::find_if(module.verbs.begin(), module.verbs.end(),
                                       [id](const OperatorVerb& candidate) { return candidate.id == id; });
        if (verb == module.verbs.end()) {
            return RequestFailure{RequestError::UnknownVerb, "the operator has no such verb"};
        }
        for (const int step : {kData, module.id, id}) {
            reply_.putChild(step);
        }
        return verb->run(request_, reply_);
    }

    bool descend() {
        if (!seekOnlyChild(request_)) {
            return false;
        }
        const std::string name = request_.curName();
        place += '/' + (name.empty() ? std::to_string(request_.curID()) : name);
        return true;
    }

    const HBXMessageIterator& request_;
    HBXMessageIterator& reply_;
};

MessagePointer newReply(const HBXMessage& request) {
    MessagePointer reply = adoptMessage(HBXMsgFactory::createNew());
    copyEnvelope(request, *reply);
    return reply;
}

void writeFailure(HBXMessageIterator& reply, const RequestFailure& failure) {
    reply.putChild(kData);
    reply.putChild(kError);
    reply.putValue(static_cast<int>(failure.code), kCode);
    reply.putValue(failure.message, kMessage);
}

} // namespace

Reply answerRequest(const HBXMessage& request) {
    MessagePointer reply = newReply(request);
    const std::unique_ptr<const HBXMessageIterator> from(request.newIterator());
    const Cursor to = cursorOn(reply);
    Dispatch dispatch(*from, *to);
    Outcome failure = dispatch.run();
    if (failure) {
        reply = newReply(request); // without what the verb may have begun to write
        writeFailure(*cursorOn(reply), *failure);
    }
    return {std::move(reply), std::move(failure), std::move(dispatch.place)};
}

} // namespace HBX::tool
