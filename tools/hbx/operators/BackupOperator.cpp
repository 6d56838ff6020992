#include "BackupOperator.h"

#include <HBXFunctionalityCore/backup/HBXBackupMBase.h>

#include "BackupReference.h"

namespace HBX::tool {

namespace {

struct UriRecord {
    std::string uri;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<UriRecord>;
    using Writer = HBXTableWriter<UriRecord>;
};

constexpr HBXRow kUriRecord[] = {member<&UriRecord::uri>(3501)};

struct TypeArguments {
    int type = 0;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<TypeArguments>;
};

constexpr HBXRow kTypeArguments[] = {member<&TypeArguments::type>(3055)};

struct TypeResult {
    std::string name;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<TypeResult>;
    using Writer = HBXTableWriter<TypeResult>;
};

constexpr HBXRow kTypeResult[] = {member<&TypeResult::name>(1026)};

constinit const HBXRecordTable UriRecord::table = recordTable<UriRecord>("UriRecord", 0, 0, kUriRecord);
constinit const HBXRecordTable TypeArguments::table =
    recordTable<TypeArguments>("TypeArguments", 0, 0, kTypeArguments);
constinit const HBXRecordTable TypeResult::table = recordTable<TypeResult>("TypeResult", 0, 0, kTypeResult);

Outcome parse(const UriRecord& arguments, BackupReference& result) {
    const auto reference = parseBackupReference(arguments.uri);
    if (!reference) {
        return RequestFailure{RequestError::BadArguments, "uri is no backup reference"};
    }
    result = *reference;
    return {};
}

Outcome make(const BackupReference& arguments, UriRecord& result) {
    std::string reason;
    const auto text = textOfReference(arguments, reason);
    if (!text) {
        return RequestFailure{RequestError::BadArguments, reason};
    }
    result.uri = *text;
    return {};
}

Outcome typeName(const TypeArguments& arguments, TypeResult& result) {
    result.name = HBXBackupMBase::getBackupTypeString(arguments.type);
    return {};
}

constexpr OperatorVerb kVerbs[] = {
    {3481, answer<UriRecord, BackupReference, parse>},
    {3500, answer<BackupReference, UriRecord, make>},
    {3502, answer<TypeArguments, TypeResult, typeName>},
};

} // namespace

constinit const Operator kBackupOperator{3072, kVerbs};

} // namespace HBX::tool
