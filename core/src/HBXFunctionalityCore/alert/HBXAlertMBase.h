#pragma once

#include <string>
#include <vector>

#include <HBXFunctionalityCore/alert/HBXInfo.h>
#include <HBXFunctionalityCore/identity/HBXEID.h>
#include <HBXFunctionalityCore/modules/HBXAuthMBase.h>
#include <HBXFunctionalityCore/time/HBXTimeInterval.h>
#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXPolymorphic.h>

/// The plain records of the alert module. Those with behaviour: HBXAlertData.h, HBXEvent.h, HBXInfo.h.
namespace HBX {

/// The agent's module for alerts, events and the log.
class HBX_EXPORT HBXAlertMBase {
public:
    virtual ~HBXAlertMBase();
};

/// How far a request has come.
struct HBX_EXPORT HBXRequestProgressData : HBXPolymorphic {
    std::string requestId;
    int percent = 0;
    HBXOptionalProperty<std::string> stage; ///< name of what is being done
    HBXOptionalProperty<HBXInfo> info;      ///< the same for people
    HBXOptionalProperty<bool> finished;

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXRequestProgressData>;
    using Writer = HBXTableWriter<HBXRequestProgressData>;
};

/// A mail that is sent for an alert. "%name%" in subject and body is a parameter of the alert's text.
struct HBX_EXPORT HBXMailTemplate {
    std::string name;
    std::string subject;
    std::string body;
    HBXOptionalProperty<std::string> language; ///< such as "en"
    HBXOptionalProperty<bool> html;            ///< else plain text

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXMailTemplate>;
    using Writer = HBXTableWriter<HBXMailTemplate>;
};

/// Somebody who gets mails.
struct HBX_EXPORT HBXMailerAccount {
    HBXGUID id;
    std::string name;
    std::string address;
    HBXOptionalProperty<std::string> realName;
    HBXOptionalProperty<bool> disabled;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXMailerAccount>;
    using Writer = HBXTableWriter<HBXMailerAccount>;
};

/// How and to whom mails are sent.
struct HBX_EXPORT HBXMailerConfig {
    std::string server; ///< host name or IP address
    int port = 0;
    HBXOptionalProperty<bool> useTls;
    HBXOptionalProperty<HBXUserCredentials> credentials; ///< for the server
    HBXOptionalProperty<std::string> sender;             ///< address that the mails come from
    std::vector<HBXMailerAccount> accounts;
    std::vector<HBXMailTemplate> templates;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXMailerConfig>;
    using Writer = HBXTableWriter<HBXMailerConfig>;
};

/// One class of log messages.
struct HBX_EXPORT HBXLogClass {
    int id = 0;
    std::string name;
    int level = 0; ///< messages of this level and below are kept
    HBXOptionalProperty<std::string> description;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXLogClass>;
    using Writer = HBXTableWriter<HBXLogClass>;
};

/// One log message.
struct HBX_EXPORT HBXLogInfo {
    std::int64_t time = 0; ///< seconds since 1970-01-01 UTC
    int level = 0;
    std::string source; ///< the module that wrote it
    std::string message;
    HBXOptionalProperty<HBXEID> eid; ///< the environment that it is about
    HBXOptionalProperty<int> classId;
    HBXOptionalProperty<int> count; ///< of equal messages in a row

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXLogInfo>;
    using Writer = HBXTableWriter<HBXLogInfo>;
};

/// Which log messages are wanted; what is unset or empty does not restrict.
struct HBX_EXPORT HBXLogOptions : HBXPolymorphic {
    HBXOptionalProperty<HBXTimeInterval> interval;
    HBXOptionalProperty<int> minLevel;
    std::vector<int> classes; ///< ids
    std::vector<HBXEID> eids;
    HBXOptionalProperty<int> maxCount;

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXLogOptions>;
    using Writer = HBXTableWriter<HBXLogOptions>;
};

/// What an agent keeps in its log.
struct HBX_EXPORT HBXLogParameters {
    int level = 0;
    HBXOptionalProperty<std::int64_t> maxSize; ///< of a log file, bytes
    HBXOptionalProperty<int> keepFiles;        ///< older ones are removed
    std::vector<std::string> modules;          ///< names; empty: all
    std::vector<HBXLogClass> classes;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXLogParameters>;
    using Writer = HBXTableWriter<HBXLogParameters>;
};

extern template class HBX_EXPORT HBXDerivedParserFactory<HBXRequestProgressData>;
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXLogOptions>;

} // namespace HBX
